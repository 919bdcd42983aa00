#include "Groundwork/CbExceptions.h"

#include "Scribe/CScribe.h"

namespace
{

// What a class says of itself. The logs are there before and after all code that runs, since nothing makes or destroys
// them: statics of clients may raise.
struct SKind
{
    const wchar_t* sentence;
    Scribing::CScribe log = Scribing::CScribe(L"Exception");
};

constinit const SKind Conversion = {L"Exception on data conversion"};
constinit const SKind Container = {L"Out of memory"};
constinit const SKind WrongFileVersion = {L"Wrong file version on stream"};
constinit const SKind Stream = {L"Exception on stream access"};

// The last step of each constructor: by now the exception knows all of its origin.
void LogRaised(const IException& exception, const SKind& kind)
{
    kind.log.Error(exception.GetFilename(), static_cast<int>(exception.GetCodeLine()), exception.GetFunctionName(),
                   kind.sentence);
}

} // namespace

IException::~IException() = default;

CbExceptionConversion::CbExceptionConversion(const char* file, unsigned int line, const char* function)
    : CbExceptionBase(file, line, function, Conversion.sentence)
{
    LogRaised(*this, Conversion);
}

CbExceptionConversion::CbExceptionConversion(const CbExceptionConversion& other) noexcept = default;
CbExceptionConversion& CbExceptionConversion::operator=(const CbExceptionConversion& other) noexcept = default;
CbExceptionConversion::~CbExceptionConversion() = default;

CbExceptionContainer::CbExceptionContainer(const char* file, unsigned int line, const char* function)
    : CbExceptionBase(file, line, function, Container.sentence)
{
    LogRaised(*this, Container);
}

CbExceptionContainer::CbExceptionContainer(const CbExceptionContainer& other) noexcept = default;
CbExceptionContainer& CbExceptionContainer::operator=(const CbExceptionContainer& other) noexcept = default;
CbExceptionContainer::~CbExceptionContainer() = default;

CbExceptionWrongFileVersion::CbExceptionWrongFileVersion(const char* file, unsigned int line, const char* function)
    : CbExceptionBase(file, line, function, WrongFileVersion.sentence)
{
    LogRaised(*this, WrongFileVersion);
}

CbExceptionWrongFileVersion::CbExceptionWrongFileVersion(const CbExceptionWrongFileVersion& other) noexcept = default;
CbExceptionWrongFileVersion&
CbExceptionWrongFileVersion::operator=(const CbExceptionWrongFileVersion& other) noexcept = default;
CbExceptionWrongFileVersion::~CbExceptionWrongFileVersion() = default;

CbExceptionStream::CbExceptionStream(const char* file, unsigned int line, const char* function)
    : CbExceptionBase(file, line, function, Stream.sentence)
{
    LogRaised(*this, Stream);
}

CbExceptionStream::CbExceptionStream(const CbExceptionStream& other) noexcept = default;
CbExceptionStream& CbExceptionStream::operator=(const CbExceptionStream& other) noexcept = default;
CbExceptionStream::~CbExceptionStream() = default;
