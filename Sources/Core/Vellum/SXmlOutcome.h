#pragma once

#include <cstdint>
#include <string>

#include "Vellum/SOutcome.h"

namespace Vellum
{

/// What CReaderXml::Check has found out about a text. A text of the document that was lost since no memory could be had
/// for it is no error.
///
/// | Error | Name | What it is |
/// |---|---|---|
/// | 0 | XmlOk |  |
/// | 1 | XmlElementNotClosed | an end tag names another element than the open one, or the text ends inside an element |
/// | 4 | XmlNoElementName | no name behind `"<"` or `"<?"` |
/// | 5 | XmlBadEndTag | `"</"` without a name and ">" behind it |
/// | 7 | XmlStrayEndTag | an end tag for which no element is open |
/// | 8 | XmlClearNotClosed | a comment, CDATA section, document type, `<PRE>` or `<Script>` without its end |
/// | 9 | XmlUnexpectedToken | something in a tag that doesn't belong there |
/// | 14 | XmlBadReference | a reference that is malformed or unknown, or a bare `"&"` |
/// | 15 | XmlTooDeep | more than 1024 elements, or declarations, within one another |
/// | 16 | XmlTextTooLong | 2 GiB of text and more |
struct SXmlOutcome
{
    std::int32_t error;   ///< The last one that was met; all but 0 and 1 make Read find nothing at all
    const char* name;     ///< Its name, a constant
    std::uint32_t line;   ///< Where it was found: the wrong token, name or reference, the section that isn't closed, or
                          ///< the end of the text. Lines end with LF; the first is 1. 0 without an error
    std::uint32_t column; ///< In bytes; the first is 1. 0 without an error
    bool hasTree;         ///< Whether Read has anything to look into

    /// @name As SOutcome has it
    /// The path is that of the elements that are open at the place. For XmlElementNotClosed the reason tells where the
    /// element was opened. A document without an error isn't accepted if it lacks the root that was asked for.
    /// @{
    bool isAccepted = true;
    std::uint64_t offset = 0;
    std::string reason = {};
    std::string path = {};
    /// @}

    /// What the Check of any reader tells.
    operator SOutcome() const { return {isAccepted, offset, line, column, reason, path}; }
};

} // namespace Vellum
