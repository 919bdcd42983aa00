#pragma once

#include "../Platform/Export.h"

/// @file
/// Documents: what a client implements to be stored, and what stores it as binary, JSON or XML and reads it back.
namespace Vellum
{

class IDataReader;
class IDataWriter;

/// ISerializable: a client object with named fields. A class that implements it can be stored in, and filled from,
/// every document format; it never learns which one it is talking to.
///
/// - **Threads** The three operations are called on the thread that called the document class. Of the text formats that
///   thread is in the C locale meanwhile: what the client prints, scans or compares by the C library, it does without a
///   locale of its own.
/// - **Errors** What they raise passes through a binary writer and all readers unchanged. The JSON and XML writers
///   raise their own CException in its place.
class VELLUM_API ISerializable
{
public:
    virtual ~ISerializable();

    /// The object's type name, never null. The text is copied at once by whoever asks, so it need only be valid until
    /// the next call.
    virtual const char* GetTypeName() const = 0;

    /// Hands all fields to the writer, which is good for this call only.
    virtual void Write(IDataWriter& writer) const = 0;

    /// Takes from the reader what it wants, in any order and as often as it likes. The reader, and the keys and blobs
    /// that it hands out, are good for this call only.
    virtual void Read(IDataReader& reader) = 0;

protected:
    ISerializable() = default;
    ISerializable(const ISerializable&) = default;
    ISerializable& operator=(const ISerializable&) = default;
};

} // namespace Vellum
