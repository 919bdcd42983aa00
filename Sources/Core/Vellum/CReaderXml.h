#pragma once

#include <memory>
#include <string>

#include "../Platform/Export.h"

#include "Vellum/IReader.h"
#include "Vellum/LifetimeBound.h"
#include "Vellum/SXmlOutcome.h"

namespace Vellum
{

/// CReaderXml: fills a client's object or sequence from an XML document, the library's own or anybody else's. The
/// parser is small and forgiving: [Docs/XmlFormat.md](Docs/XmlFormat.md) tells what it takes and what it makes of it.
///
/// - **Root** The first element at the top that carries the type name of the client's object, with "-" for each "::"
///   and without regard to case. The top is what a declaration, `<?xml ...?>`, has behind it, or a text without one in
///   which several things stand side by side. Where there is no such element, as in a document that the parser rejects,
///   nothing is raised: the client's Read is called and finds nothing. Check tells more.
/// - **Keys** are found without regard to case; of several equal ones the first counts. GetKey gives all child elements
///   in their order. Attributes are not looked at.
/// - **Values** are texts, converted when they are asked for: the first text of an element, or else its first CDATA
///   section or comment, or else the empty text. For a field, white space around it doesn't count. A bool or date field
///   is the first text alone, as it stands. What is neither "true" nor "false" leaves a bool as it was and gives false.
/// - **Elements** of a sequence that are asked for as a value must be named "elt"; objects and sequences have any name.
/// - **Memory** The text isn't copied: it must stay valid and unchanged until Read has returned, unless it is a
///   temporary std::string, which the reader keeps. clang++ warns of texts that don't live. Nothing else is kept
///   between two calls.
/// - **Locale** The client's Read is called in the C locale; the thread has its own again when Read has returned or
///   raised.
/// - **Errors** CException from "Vellum::CContainerReaderXml::readValue" for a value in a sequence that isn't named
///   "elt", and from "Vellum::Conversion::StringToInt", "Vellum::Conversion::StringToDouble" or
///   "Vellum::Base64::Decode" for one that doesn't convert; CbExceptionConversion from "CbDateTime::CbDateTime" for a
///   date that doesn't. What the client raises passes through.
/// - **Threads** Any number of threads may read from one reader.
class VELLUM_API CReaderXml : public IReader
{
public:
    /// Reads a zero-terminated text, which stays the client's; null reads like the empty one.
    explicit CReaderXml(const char* text VELLUM_LIFETIMEBOUND);

    /// Reads up to the string's first NUL. The string must neither change nor die before Read has returned.
    explicit CReaderXml(const std::string& text VELLUM_LIFETIMEBOUND);

    /// Keeps a text that nobody else does, as in CReaderXml(stream.str()), and reads it up to its first NUL. Raises
    /// std::bad_alloc.
    explicit CReaderXml(std::string&& text);

    /// Both read the same text, and keep it if one of them does.
    CReaderXml(const CReaderXml& other);
    CReaderXml& operator=(const CReaderXml& other);
    ~CReaderXml() override;

    /// @name Read
    /// Parses the text and calls the root's Read once, also where there is nothing to be found. May be repeated, with
    /// equal results.
    /// @{
    void Read(ISerializableContainer& root) const override;
    void Read(ISerializable& root) const override;
    /// @}

    /// Parses the text and calls nobody, for those who want to know why Read finds nothing, or less than it should.
    SXmlOutcome Check() const;

    /// The same for a root of that type name: a text without an error but without such a root isn't accepted, and the
    /// reason tells what there is instead. Null is not accepted.
    SXmlOutcome Check(const char* typeName) const;

private:
    std::shared_ptr<const std::string> kept; // null for a text that is the client's
    const char* text;
};

} // namespace Vellum
