#include <string>
#include <utility>

#include "Describe/CDocumentException.h"
#include "Describe/src/DocumentText.h"
#include "Describe/Variants.h"

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

namespace Describing
{
namespace
{

// `lines[3].price`
std::string GetPath(const SPlace& place)
{
    if (place.outer == nullptr)
        return {};
    std::string path = GetPath(*place.outer);
    if (place.key == nullptr)
        return path + '[' + std::to_string(place.index) + ']';
    return path + (path.empty() ? "" : ".") + place.key;
}

} // namespace

void RaiseAt(const SPlace& place, const std::string& reason)
{
    const STextPosition position = FindPosition(place);
    const CDocumentException failure(__FILE__, __LINE__, place.document->function,
                                     {reason, GetPath(place), {}, position.line, position.column});
    if (place.document->failure != nullptr)
        *place.document->failure = std::make_exception_ptr(failure);
    throw failure;
}

void RaiseAgainAt(const SPlace& place)
{
    try
    {
        throw;
    }
    catch (const CDocumentException&)
    {
        throw;
    }
    catch (const IException& exception)
    {
        RaiseAt(place, DescribeRefusal(exception));
    }
}

void RaiseNoAlternative(const char* key, const SPlace& place)
{
    if (*key == '\0')
        RaiseAt(place, "No alternative is named here.");
    RaiseAt(SPlace{place.document, &place, key}, std::string("There is no alternative \"") + key + "\".");
}

void RaiseUnlisted(const SPlace& place) { RaiseAt(place, "The object's class isn't among the alternatives."); }

} // namespace Describing
} // namespace Vellum
