#pragma once

#include <string_view>

#include "Vellum/src/CXmlElement.h"
#include "Vellum/src/WhiteSpace.h"

namespace Vellum
{

// The first text of an element, or else the first section that was taken as it stands, or else the empty text.
inline std::string_view GetValueText(CXmlElement element)
{
    return element.GetTextCount() == 0 && element.GetClearCount() != 0 ? element.GetClear(0).value
                                                                       : element.GetFirstText();
}

// Most texts have none: the parser has trimmed them.
inline std::string_view TrimSpace(std::string_view text)
{
    while (!text.empty() && IsWhiteSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsWhiteSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

} // namespace Vellum
