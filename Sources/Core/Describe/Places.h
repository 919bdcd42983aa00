#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>

#include "../Platform/Export.h"

#include "Vellum/BlobRange.h"
#include "Vellum/IContainerReader.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataReader.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

/// @file
/// Where a value is on its way to or from a document. A value is written to a SFieldOut or SElementOut and read from a
/// SFieldIn or SElementIn; how it is stored is told by its type alone, in the files beside this one.
namespace Vellum
{

/// The formats of documents.
enum class EFormat : std::uint8_t
{
    Any, ///< Save and Load: by the name of the file; inside, a document of which nothing is known
    Binary,
    Json,
    Xml
};

} // namespace Vellum

namespace Vellum::Describing
{

constexpr bool IsText(EFormat format) { return format == EFormat::Json || format == EFormat::Xml; }

/// The document that all places belong to.
struct SDocument
{
    EFormat format = EFormat::Any;
    const char* function = "Vellum::Stored"; ///< Which the client has called
    const char* text = nullptr;              ///< Of a text document that is read
    std::exception_ptr* failure = nullptr;   ///< Takes what was raised, since text writers replace it by their own
};

inline constexpr SDocument UnknownDocument{};

/// A place in a document: the way to it goes through `outer`, which is null for the root. Places lie on the stack.
struct SPlace
{
    const SDocument* document;
    const SPlace* outer = nullptr;
    const char* key = nullptr; ///< Null for an element
    std::uint32_t index = 0;   ///< Of an element
};

/// Raises CDocumentException for a place, with line and column where the document is a text and they can be found.
[[noreturn]] VELLUM_API void RaiseAt(const SPlace& place, const std::string& reason);

/// A field that is written. KnowsAbsence: whether reading can tell that nothing was written.
struct SFieldOut
{
    static constexpr bool IsElement = false;
    static constexpr bool KnowsAbsence = true;

    template <class T>
    void Put(const T& value) const
    {
        writer.Write(key, value);
    }
    void PutBlob(const void* data, std::size_t size) const { writer.Write(key, size, data); }
    SPlace GetPlace() const { return {outer.document, &outer, key}; }

    IDataWriter& writer;
    const char* key;
    const SPlace& outer;
};

/// A field whose key comes from a map: an absent one would be no entry.
struct SEntryOut : SFieldOut
{
    static constexpr bool KnowsAbsence = false;
};

/// An element that is written.
struct SElementOut
{
    static constexpr bool IsElement = true;
    static constexpr bool KnowsAbsence = false;

    template <class T>
    void Put(const T& value) const
    {
        writer.Write(value);
    }
    SPlace GetPlace() const { return {outer.document, &outer, nullptr, index}; }

    IContainerWriter& writer;
    std::uint32_t index;
    const SPlace& outer;
};

/// Called while an exception is handled: one that the library has raised about a value becomes a CDocumentException of
/// this place, any other stays.
[[noreturn]] VELLUM_API void RaiseAgainAt(const SPlace& place);

/// Calls the reader, and tells what it raises with the place.
template <class In, class Function>
auto CallReader(const In& in, const Function& read)
{
    try
    {
        return read();
    }
    catch (...)
    {
        RaiseAgainAt(in.GetPlace());
    }
}

/// A field that is read. Get and GetBlob are those of the reader.
template <bool Checked>
struct SFieldIn
{
    static constexpr bool IsStrict = Checked;
    static constexpr bool IsElement = false;
    static constexpr bool KnowsAbsence = true;

    template <class T>
    bool Get(T& value) const
    {
        if constexpr (IsStrict)
            return CallReader(*this, [&] { return reader.Read(key, value); });
        else
            return reader.Read(key, value);
    }
    BlobRange GetBlob() const
    {
        if constexpr (IsStrict)
            return CallReader(*this, [&] { return reader.GetBlob(key); });
        else
            return reader.GetBlob(key);
    }
    SPlace GetPlace() const { return {outer.document, &outer, key}; }

    IDataReader& reader;
    const char* key;
    const SPlace& outer;
};

/// A field whose key comes from a map.
template <bool Checked>
struct SEntryIn : SFieldIn<Checked>
{
    static constexpr bool KnowsAbsence = false;
};

/// An element that is read.
template <bool Checked>
struct SElementIn
{
    static constexpr bool IsStrict = Checked;
    static constexpr bool IsElement = true;
    static constexpr bool KnowsAbsence = false;

    template <class T>
    bool Get(T& value) const
    {
        if constexpr (IsStrict)
            return CallReader(*this, [&] { return reader.Read(index, value); });
        else
            return reader.Read(index, value);
    }
    BlobRange GetBlob() const
    {
        if constexpr (IsStrict)
            return CallReader(*this, [&] { return reader.GetBlob(index); });
        else
            return reader.GetBlob(index);
    }
    SPlace GetPlace() const { return {outer.document, &outer, nullptr, index}; }

    IContainerReader& reader;
    std::uint32_t index;
    const SPlace& outer;
};

} // namespace Vellum::Describing
