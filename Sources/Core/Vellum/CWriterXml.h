#pragma once

#include <iosfwd>

#include "../Platform/Export.h"

#include "Vellum/IWriter.h"

namespace Vellum
{

/// CWriterXml: writes a client's object or sequence as an XML document onto a stream that the client owns.
///
/// - **Layout** is exact: one line for each value, one TAB for each level, a line feed behind each line. Two documents
///   of the same object are the same byte for byte. [Docs/XmlFormat.md](Docs/XmlFormat.md) has the grammar.
/// - **Names** A field is an element with its key as name, an element of a sequence one named "elt". The root, and
///   objects and sequences that are elements of a sequence, are named by their type name with "-" for each "::". Keys
///   and type names are written as they are: what is no XML name makes a document that can't be read.
/// - **Values** In texts `&` < > % LF and CR are escaped, all other bytes stand as they are; wide text is UTF-8 up to
///   its first NUL, narrow text the client's bytes, all of them. A char is one raw byte. Blobs are Base64 (RFC 4648) in
///   a CDATA section, in lines of 72 characters. Dates are "2024-03-07T14:05:09".
/// - **Numbers** go through the stream: flags that the client has set on it, such as std::hex or std::fixed, apply, and
///   a field width applies to the next number. Neither the locale of the stream nor any other does. NaN and the
///   infinities are "nan" and "inf". A double is written with 17 digits and a float with 9, which sets the stream's
///   precision, as a bool sets boolalpha; they stay as they were set last.
/// - **Back** CReaderXml gives back what has plain keys and texts in UTF-8 without white space at their ends. The chars
///   NUL, < and `&` and those from 0xC2 up lose more than themselves: [Docs/XmlFormat.md](Docs/XmlFormat.md) has the
///   whole table.
/// - **Repeats** Each Write appends one complete document. A key written twice stands twice in it.
/// - **Locale** The client's Write is called in the C locale; the thread has its own again behind this one.
/// - **Errors** Whatever goes wrong, an exception of the client's own included, leaves Write as a CException from
///   "Vellum::CWriterXml::Write". What was written until then stays on the stream. A stream that can't take the output
///   is not looked at; it tells by its own state.
/// - **Threads** A writer and its stream belong to one thread at a time.
class VELLUM_API CWriterXml : public IWriter
{
public:
    /// The stream must outlive the writer, which neither rewinds nor flushes it. Its precision becomes 16, and
    /// boolalpha is set.
    explicit CWriterXml(std::ostringstream& stream);

    /// The copy writes to the same stream and leaves it as it is.
    CWriterXml(const CWriterXml& other);
    ~CWriterXml() override;

    /// @name Write
    /// Append one document, whose root's Write is called once. Raises CException, "Vellum::CWriterXml::Write".
    /// @{
    void Write(const ISerializableContainer& root) override;
    void Write(const ISerializable& root) override;
    /// @}

private:
    std::ostringstream* stream;
};

} // namespace Vellum
