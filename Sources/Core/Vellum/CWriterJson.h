#pragma once

#include <iosfwd>

#include "../Platform/Export.h"

#include "Vellum/IWriter.h"

namespace Vellum
{

/// CWriterJson: writes a client's object or sequence as a JSON document (RFC 8259, with a layout of its own) onto a
/// stream that the client owns.
///
/// - **Layout** is exact: TABs for indentation, one line for each field or element, a line feed behind the document.
///   Two documents of the same object are the same byte for byte. Type names and versions are not written.
/// - **Values** Texts in quotes with the escapes `\b` `\t` `\n` `\f` `\r` `\``" \\, everything else in them as it is;
///   blobs as Base64 (RFC 4648) on one line; dates as "`2024-03-07T09:05:01". Keys are not escaped at all. NaN and the
///   infinities are written as the stream prints them, which is no JSON.
/// - **Numbers** go through the stream: flags that the client has set on it, such as std::hex or std::fixed, apply, and
///   a field width applies to the next number. Neither the locale of the stream nor any other does. A double is written
///   with 17 digits and a float with 9, which sets the stream's precision and showpoint, as a bool sets boolalpha; they
///   stay as they were set last.
/// - **Back** CReaderJson gives everything back but empty blobs, NaN payloads, milliseconds, lone surrogates, keys with
///   a quote, and numbers written with hex, oct, fixed or a fill. [Docs/JsonFormat.md](Docs/JsonFormat.md) has the
///   whole table.
/// - **Repeats** Each Write appends one complete document. A key written twice stands twice in it.
/// - **Locale** The client's Write is called in the C locale; the thread has its own again behind this one.
/// - **Errors** Whatever goes wrong, an exception of the client's own included, leaves Write as a CException from
///   "Vellum::CWriterJson::Write". What was written until then stays on the stream. A stream that can't take the output
///   is not looked at; it tells by its own state.
/// - **Threads** A writer and its stream belong to one thread at a time.
class VELLUM_API CWriterJson : public IWriter
{
public:
    /// The stream is kept by reference and must outlive the writer, which neither rewinds nor flushes it.
    explicit CWriterJson(std::ostringstream& stream);

    /// The copy writes to the same stream.
    CWriterJson(const CWriterJson& other);
    ~CWriterJson() override;

    /// Whether floats and doubles always have a decimal point and keep their trailing zeros: 100.00000000000000 rather
    /// than 100. True from construction; takes effect at the next Write.
    void SetShowPoint(bool value);

    /// @name Write
    /// Append one document, whose root's Write is called once. Raises CException, "Vellum::CWriterJson::Write".
    /// @{
    void Write(const ISerializableContainer& root) override;
    void Write(const ISerializable& root) override;
    /// @}

private:
    std::ostringstream& stream;
    bool showPoint = true;
};

} // namespace Vellum
