#include "Vellum/CDocumentException.h"

#include <string>
#include <utility>

namespace Vellum
{

struct CDocumentException::STold
{
    SDocumentFailure failure;
    std::string line;
};

namespace
{

// The places from the widest to the narrowest, and why.
std::string MakeLine(const char* function, const SDocumentFailure& failure)
{
    std::string line = function;
    const char* separator = ": ";
    const auto append = [&](const std::string& text) { line += std::exchange(separator, ", ") + text; };
    if (!failure.file.empty())
        append(failure.file);
    if (!failure.path.empty())
        append(failure.path);
    if (failure.line != 0)
        append("line " + std::to_string(failure.line));
    if (failure.column != 0)
        append("column " + std::to_string(failure.column));
    if (failure.line == 0 && failure.offset != SDocumentFailure::UnknownOffset)
        append("byte " + std::to_string(failure.offset));
    return line + ": " + failure.reason;
}

} // namespace

CDocumentException::CDocumentException(const char* file, unsigned int line, const char* function,
                                       SDocumentFailure failure)
    : CException(file, line, function)
{
    std::string text = MakeLine(function, failure);
    told = std::make_shared<const STold>(STold{std::move(failure), std::move(text)});
}

CDocumentException::CDocumentException(const CDocumentException& other) noexcept = default;
CDocumentException& CDocumentException::operator=(const CDocumentException& other) noexcept = default;
CDocumentException::~CDocumentException() = default;

std::unique_ptr<IException> CDocumentException::Clone() const { return std::make_unique<CDocumentException>(*this); }
const char* CDocumentException::what() const noexcept { return told->line.c_str(); }

const char* CDocumentException::GetReason() const { return told->failure.reason.c_str(); }
const char* CDocumentException::GetPath() const { return told->failure.path.c_str(); }
const char* CDocumentException::GetFile() const { return told->failure.file.c_str(); }
std::uint32_t CDocumentException::GetLine() const { return told->failure.line; }
std::uint32_t CDocumentException::GetColumn() const { return told->failure.column; }
const SDocumentFailure& CDocumentException::GetFailure() const { return told->failure; }

} // namespace Vellum
