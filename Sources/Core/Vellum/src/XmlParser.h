#pragma once

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "Vellum/src/CXmlNode.h"
#include "Vellum/src/CXmlOpenElement.h"

// A small, forgiving parser that turns a text into a tree of CXmlNode. It doesn't validate: there are no document
// types, no namespaces and no check of names, and nothing is ever fetched or expanded but the five entities.
//
//   content := (text | element | declaration | clear)*
//   element := "<" name attribute* (">" content "</" name ">" | "/>")
//   declaration := "<?" name attribute* ">" content         it has no end: all that follows is its content
//   attribute := name ["=" (quoted | word)]
//   clear := "<![CDATA[" ... "]]>" | "<PRE>" ... "</PRE>" | "<Script>" ... "</Script>" | "<!--" ... "-->"
//          | "<!DOCTYPE" ... ">"                            taken as it stands; the opening tag in any case
//
// Tag names match without regard to case. An end tag that doesn't fit closes elements until one does. Text is trimmed
// of TAB, LF, CR and blanks at both ends, then its references are decoded; a text that a clear section ends stays raw.
//
// Errors   Numbers, no exceptions but std::bad_alloc. All but XmlElementNotClosed drop the tree.
// Limits   MaxDepth open elements, and as many open declarations; 2 GiB of text. What is open is in a list, not on the
//          stack.
// Threads  No state but the context and the tree.
namespace Vellum
{

enum EXmlParseError : std::int32_t
{
    XmlOk = 0,
    XmlElementNotClosed = 1, // an end tag names another element than the open one, or the text ends inside an element
    XmlNoElementName = 4,    // no name behind "<" or "<?"
    XmlBadEndTag = 5,        // "</" without a name and ">"
    XmlStrayEndTag = 7,      // an end tag for which no element is open
    XmlClearNotClosed = 8,   // a clear section without its closing tag
    XmlUnexpectedToken = 9,  // something in a tag that doesn't belong there
    XmlBadReference = 14,    // a reference that is malformed or unknown
    XmlTooDeep = 15,         // more than MaxDepth elements, or declarations, within one another
    XmlTextTooLong = 16      // 2 GiB and more
};

// Name of an error, as in "XmlTooDeep".
const char* GetXmlErrorName(std::int32_t error);

// How a parse went.
struct SXmlParseOutcome
{
    std::int32_t error;    // the last one that was met
    std::int32_t position; // byte at which it was found: the first of the token, reference or name that is wrong, the
                           // section that isn't closed, or the end of the text. 0 without an error
};

// Parses a zero-terminated text, of which the tree keeps nothing. A null text gives the empty node, and so does one
// with an error other than XmlElementNotClosed. A single top-level element, a declaration for instance, is returned
// itself; anything else in a node without a name.
CXmlNode ParseXmlText(const char* text, SXmlParseOutcome* outcome = nullptr);

// The pieces of the parser.

enum EXmlTokenKind : std::int32_t
{
    TokenText,
    TokenQuoted, // the quotes included
    TokenOpen,
    TokenEndOpen,
    TokenClose,
    TokenEquals,
    TokenDeclaration,
    TokenEmptyClose,
    TokenClear,
    TokenEnd
};

struct SXmlClearKind
{
    const char* openTag;
    std::int32_t openLength;
    const char* closeTag;
};

struct SXmlToken
{
    EXmlTokenKind kind;
    std::int32_t length;            // bytes
    const SXmlClearKind* clearKind; // for TokenClear, else null
    const char* start;              // in the text; null for TokenEnd
};

// One parse.
struct SXmlParseContext
{
    SXmlParseContext(const char* text, CXmlMemory& memory);

    const char* text;
    const char* end;                    // the terminator
    const char* at;                     // the next unread byte
    std::int32_t error = XmlOk;         // last error set
    const char* errorPlace;             // where it was found; the start of the text without one
    const char* endTag = nullptr;       // name of an end tag that still looks for its element
    std::vector<CXmlOpenElement> open;  // from the document to the innermost element
    std::uint32_t openElements = 0;     // how many of them are elements
    std::uint32_t openDeclarations = 0; // ... or declarations
    CXmlMemory& memory;                 // of the tree
    std::array<std::pair<std::uint32_t, const SXmlName*>, 64> recentNames = {}; // with their hashes, see ShareName
};

// Takes the next token from the text. At its end there is TokenEnd, again and again.
SXmlToken NextXmlToken(SXmlParseContext& context);

// A copy of a piece of the context's text with its references decoded, in the tree's memory. Null for a reference that
// is wrong (which sets the error) and if memory is short (which doesn't).
SXmlText DecodeXmlText(const char* text, std::int32_t length, SXmlParseContext& context);

// A zero-terminated copy of so many bytes in the tree's memory. Null if memory is short.
SXmlText DuplicateText(const char* text, std::int32_t length, SXmlParseContext& context);

// The name of an element or attribute: equal ones that come close to one another may get the same. Null if there is no
// memory for its text.
const SXmlName* ShareName(const SXmlToken& name, SXmlParseContext& context);

// Whether an element's name, which may be null, is another one than the name of an end tag in the text.
bool XmlTagNamesDiffer(const SXmlName* name, const char* endTag);

} // namespace Vellum
