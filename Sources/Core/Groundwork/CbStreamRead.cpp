#include "Groundwork/CbStreamRead.h"

#include "Groundwork/CbExceptions.h"

CbStreamRead::~CbStreamRead() = default;

void CbStreamRead::ReadAndCompareVersion(unsigned int version)
{
    unsigned int stored = 0;
    Read(stored);
    if (stored > version)
        throw CbExceptionWrongFileVersion(__FILE__, __LINE__, "CbStreamRead::ReadAndCompareVersion");
}
