#include "Groundwork/CbPlexManager.h"

#include "Groundwork/CbExceptions.h"

void CbRaiseOutOfElements(const char* functionName) { throw CbExceptionContainer(__FILE__, __LINE__, functionName); }
