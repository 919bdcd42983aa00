#include "Vellum/CException.h"

#include "Scribe/CScribe.h"

namespace Vellum
{
namespace
{

constinit const Scribing::CScribe Log(L"Exception");
constexpr const wchar_t* Sentence = L"Exception";

} // namespace

CException::CException(const char* file, unsigned int line, const char* function)
    : CbExceptionBase(file, line, function, Sentence)
{
    LogException();
}

CException::CException(const CException& other) noexcept = default;
CException& CException::operator=(const CException& other) noexcept = default;
CException::~CException() = default;

void CException::LogException() const
{
    Log.Error(GetFilename(), static_cast<int>(GetCodeLine()), GetFunctionName(), Sentence);
}

} // namespace Vellum
