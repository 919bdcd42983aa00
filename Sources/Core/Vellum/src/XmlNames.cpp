#include "Vellum/src/XmlNames.h"

namespace Vellum
{

std::string ToElementName(std::string_view typeName)
{
    std::string name;
    name.reserve(typeName.size());
    for (std::size_t end = 0; (end = typeName.find("::")) != std::string_view::npos; typeName.remove_prefix(end + 2))
        (name += typeName.substr(0, end)) += '-';
    return name += typeName;
}

} // namespace Vellum
