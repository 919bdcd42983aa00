#pragma once

#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>
#include <utility>

#include "Describe/Sequences.h"
#include "Describe/Texts.h"

/// @file
/// Bytes in one piece: blobs of the contract.
///
/// - **Empty** ones aren't told from absent ones by GetBlob, and the JSON reader refuses their text. So the texts are
///   looked at first, and in binary documents the keys. As elements of a sequence, of which nobody knows the number,
///   blobs are wrapped: a sequence of none or one.
namespace Vellum::Describing
{

/// Bytes in one piece, of any type of one byte.
template <class T>
concept DocumentBytes = FoundationBytes<T> || requires(const T& bytes)
{
    requires sizeof(*std::data(bytes)) == 1;
    std::size(bytes);
};

template <DocumentBytes T>
std::pair<const unsigned char*, std::size_t> GetBytes(const T& bytes)
{
    if constexpr (FoundationBytes<T>)
        return {reinterpret_cast<const unsigned char*>(bytes.GetData()), bytes.GetSize()};
    else
        return {reinterpret_cast<const unsigned char*>(std::data(bytes)), std::size(bytes)};
}

/// Whether a key of a binary document stands there, and in no other kind than as a blob.
VELLUM_API bool IsBlobAlone(const IDataReader& reader, const char* key);

/// Bytes of a fixed number take what there is.
template <class T, class In>
void AssignBytes(T& value, BlobRange bytes, const In& in)
{
    const auto size = static_cast<std::size_t>(bytes.second - bytes.first);
    if constexpr (FoundationBytes<T>)
        value.SetSize(size);
    else if constexpr (requires { value.resize(size); })
        value.resize(size);
    else if constexpr (In::IsStrict)
        if (size != std::size(value))
            RaiseAt(in.GetPlace(), "There are " + std::to_string(size) + " bytes in place of " +
                                       std::to_string(std::size(value)) + ".");
    const auto [data, room] = GetBytes(value);
    if (const std::size_t count = size < room ? size : room; count != 0)
        std::memcpy(const_cast<unsigned char*>(data), bytes.first, count);
}

template <class T>
struct SBlobShape
{
    static const char* GetTypeName() { return SequenceName; }

    static void WriteInside(const T& value, IContainerWriter& writer, const SPlace&)
    {
        if (const auto [data, size] = GetBytes(value); size != 0)
            writer.Write(size, data);
    }

    template <bool IsStrict>
    static void ReadInside(T& value, IContainerReader& reader, const SPlace& place)
    {
        const SElementIn<IsStrict> in{reader, 0, place};
        const BlobRange bytes = in.GetBlob();
        AssignBytes(value, bytes, in);
        if constexpr (IsStrict)
            CheckEnd(reader, bytes.first != nullptr ? 1 : 0, place);
    }
};

template <class T>
struct SStored<T, EStorage::Bytes>
{
    using Wrapped = SStoredSequence<SBlobShape<T>, T>;

    static constexpr EElement Element = EElement::Sequence;

    template <class Out>
    static void Write(const T& value, const Out& out)
    {
        if constexpr (Out::IsElement)
        {
            Wrapped::Write(value, out);
        }
        else
        {
            const auto [data, size] = GetBytes(value);
            out.PutBlob(data, size);
        }
    }

    template <class In>
    static bool Read(T& value, const In& in)
    {
        if constexpr (!IsOwner<T>)
        {
            CheckOwner<T>();
            return false;
        }
        else if constexpr (In::IsElement)
            return Wrapped::Read(value, in);
        else
            return readField(value, in);
    }

private:
    template <class In>
    static bool readField(T& value, const In& in)
    {
        const EFormat format = in.outer.document->format;
        char first = 0;
        const bool hasText = format != EFormat::Binary && in.Get(first);
        if (IsText(format) && !hasText)
            return false;
        BlobRange bytes{};
        if (!hasText || first != 0)
        {
            if constexpr (In::IsStrict)
                checkText(in);
            bytes = in.GetBlob();
            if (bytes.first == nullptr && !hasText && !IsBlobAlone(in.reader, in.key))
                return false;
        }
        AssignBytes(value, bytes, in);
        return true;
    }

    template <class In>
    static void checkText(const In& in)
    {
        std::string text;
        if (IsText(in.outer.document->format) && in.Get(text))
            CheckBase64(text, in.GetPlace());
    }
};

} // namespace Vellum::Describing
