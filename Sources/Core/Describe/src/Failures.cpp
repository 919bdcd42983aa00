#include <string>

#include "Vellum/CDocumentException.h"

#include "Vellum/src/PathText.h"

#include "Describe/src/DocumentText.h"
#include "Describe/Variants.h"

namespace Vellum::Describing
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
        AppendIndex(path, place.index);
    else
        AppendKey(path, place.key);
    return path;
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

} // namespace Vellum::Describing
