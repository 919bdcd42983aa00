#include <string>
#include <utility>

#include "Describe/CDocumentException.h"
#include "Describe/src/DocumentText.h"
#include "Describe/Variants.h"

namespace Vellum
{

CDocumentException::CDocumentException(const char* file, unsigned int line, const char* function,
                                       SDocumentFailure failure)
    : CException(file, line, function), failure(std::make_shared<const SDocumentFailure>(std::move(failure)))
{
}

CDocumentException::CDocumentException(const CDocumentException& other) = default;
CDocumentException& CDocumentException::operator=(const CDocumentException& other) = default;
CDocumentException::~CDocumentException() = default;

std::unique_ptr<IException> CDocumentException::Clone() const { return std::make_unique<CDocumentException>(*this); }

const char* CDocumentException::GetReason() const { return failure->reason.c_str(); }
const char* CDocumentException::GetPath() const { return failure->path.c_str(); }
const char* CDocumentException::GetFile() const { return failure->file.c_str(); }
std::uint32_t CDocumentException::GetLine() const { return failure->line; }
std::uint32_t CDocumentException::GetColumn() const { return failure->column; }
const SDocumentFailure& CDocumentException::GetFailure() const { return *failure; }

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
    const CDocumentException failure(__FILE__, __LINE__, "Vellum::Describing::RaiseAt",
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
