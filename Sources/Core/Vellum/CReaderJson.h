#pragma once

#include <memory>
#include <string>

#include "../Platform/Export.h"

#include "Vellum/IReader.h"
#include "Vellum/LifetimeBound.h"
#include "Vellum/SOutcome.h"

namespace Vellum
{

/// CReaderJson: fills a client's object or sequence from a JSON document, the library's own or anybody else's. JSON is
/// that of RFC 8259, read leniently: see [Docs/JsonFormat.md](Docs/JsonFormat.md) for what is accepted beyond it.
///
/// - **Parsing** happens in each Read, of the whole document, before the client is called: a client sees a complete
///   document or nothing. The text behind the root's closing bracket isn't looked at.
/// - **Values** are texts, converted when they are asked for: a number in quotes reads like one without, and any value
///   reads as text. Escapes are decoded for texts alone, so not in keys, numbers, chars, dates and blobs. What fails to
///   convert raises; what is no bool gives false and sets the value to false.
/// - **Absence** A member that is null isn't there. A null element counts as an index at which nothing is found.
/// - **Order** GetKey gives the keys in an order that their hashes decide, each once. Of a key written twice the last
///   value that isn't null is kept.
/// - **Memory** The text isn't copied: it must stay valid and unchanged until Read has returned, unless it is a
///   temporary std::string, which the reader keeps. clang++ warns of texts that don't live. Nothing else is kept
///   between two calls of Read.
/// - **Locale** The client's Read is called in the C locale; the thread has its own again when Read has returned or
///   raised.
/// - **Errors** CException from "SkipEmptyChars", "ParseValue", "Vellum::ParseString", "Vellum::ParseObject" or
///   "Vellum::ParseArray" for a document that can't be parsed, brackets nested deeper than 1024 levels and a root of
///   the other kind among them; from "Vellum::CReaderJson::Read" for a null text. CException from
///   "Vellum::Conversion::StringToInt", "Vellum::Conversion::StringToDouble" or "Vellum::Base64::Decode", and
///   CbExceptionConversion for a date, when a value doesn't convert. What the client raises passes through.
/// - **Threads** Any number of threads may read from one reader.
class VELLUM_API CReaderJson : public IReader
{
public:
    /// Reads a zero-terminated text, which stays the client's.
    explicit CReaderJson(const char* text VELLUM_LIFETIMEBOUND);

    /// Reads up to the string's first NUL. The string must neither change nor die before Read has returned.
    explicit CReaderJson(const std::string& text VELLUM_LIFETIMEBOUND);

    /// Keeps a text that nobody else does, as in CReaderJson(stream.str()), and reads it up to its first NUL. Raises
    /// std::bad_alloc.
    explicit CReaderJson(std::string&& text);

    /// Both read the same text, and keep it if one of them does.
    CReaderJson(const CReaderJson& other);
    CReaderJson& operator=(const CReaderJson& other);
    ~CReaderJson() override;

    /// @name Read
    /// Parses the text and calls the root's Read once. May be repeated, with equal results. The empty text is an empty
    /// sequence, and the text "null" an empty object.
    /// @{
    void Read(ISerializableContainer& root) const override;
    void Read(ISerializable& root) const override;
    /// @}

    /// Goes through the text as Read does and calls nobody: tells whether it is taken, for a root that is an object or
    /// a sequence as the text has it, or else what is wrong and where.
    SOutcome Check() const;

private:
    std::shared_ptr<const std::string> kept; // null for a text that is the client's
    const char* text;
};

} // namespace Vellum
