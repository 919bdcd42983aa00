#include "Vellum/CException.h"

#include "Scribe/CScribe.h"

namespace Vellum
{
namespace
{

const Scribing::CScribe Log(L"Exception");

} // namespace

CException::CException(const char* file, unsigned int line, const char* function)
    : CbExceptionBase(file, line, function)
{
    LogException();
}

CException::CException(const CException& other) = default;
CException& CException::operator=(const CException& other) = default;
CException::~CException() = default;

void CException::LogException() const
{
    Log.Error(GetFilename(), static_cast<int>(GetCodeLine()), GetFunctionName(), L"Exception");
}

} // namespace Vellum
