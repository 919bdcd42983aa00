#include "Groundwork/CbExceptions.h"

#include "Platform/ThreadId.h"

#include "Scribe/CScribe.h"

namespace
{

const Scribing::CScribe ConversionLog(L"Exception");
const Scribing::CScribe ContainerLog(L"Exception");
const Scribing::CScribe WrongFileVersionLog(L"Exception");
const Scribing::CScribe StreamLog(L"Exception");

// The last step of each constructor: by now the exception knows all of its origin.
void LogRaised(const IException& exception, const Scribing::CScribe& log, const wchar_t* sentence)
{
    log.Error(exception.GetFilename(), static_cast<int>(exception.GetCodeLine()), exception.GetFunctionName(),
              sentence);
}

} // namespace

IException::~IException() = default;

std::uint32_t IException::GetCallingThread() noexcept { return Vellum::Platform::GetCurrentThreadId(); }

CbExceptionConversion::CbExceptionConversion(const char* file, unsigned int line, const char* function)
    : CbExceptionBase(file, line, function)
{
    LogRaised(*this, ConversionLog, L"Exception on data conversion");
}

CbExceptionConversion::CbExceptionConversion(const CbExceptionConversion& other) = default;
CbExceptionConversion& CbExceptionConversion::operator=(const CbExceptionConversion& other) = default;
CbExceptionConversion::~CbExceptionConversion() = default;

CbExceptionContainer::CbExceptionContainer(const char* file, unsigned int line, const char* function)
    : CbExceptionBase(file, line, function)
{
    LogRaised(*this, ContainerLog, L"Out of memory");
}

CbExceptionContainer::CbExceptionContainer(const CbExceptionContainer& other) = default;
CbExceptionContainer& CbExceptionContainer::operator=(const CbExceptionContainer& other) = default;
CbExceptionContainer::~CbExceptionContainer() = default;

CbExceptionWrongFileVersion::CbExceptionWrongFileVersion(const char* file, unsigned int line, const char* function)
    : CbExceptionBase(file, line, function)
{
    LogRaised(*this, WrongFileVersionLog, L"Wrong file version on stream");
}

CbExceptionWrongFileVersion::CbExceptionWrongFileVersion(const CbExceptionWrongFileVersion& other) = default;
CbExceptionWrongFileVersion& CbExceptionWrongFileVersion::operator=(const CbExceptionWrongFileVersion& other) = default;
CbExceptionWrongFileVersion::~CbExceptionWrongFileVersion() = default;

CbExceptionStream::CbExceptionStream(const char* file, unsigned int line, const char* function)
    : CbExceptionBase(file, line, function)
{
    LogRaised(*this, StreamLog, L"Exception on stream access");
}

CbExceptionStream::CbExceptionStream(const CbExceptionStream& other) = default;
CbExceptionStream& CbExceptionStream::operator=(const CbExceptionStream& other) = default;
CbExceptionStream::~CbExceptionStream() = default;
