#pragma once

#include <concepts>
#include <cstddef>
#include <iosfwd>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "Describe/Bytes.h"

namespace Vellum
{

/// The argument that asks for checked reading; see FromJson.
struct SStrict
{
};

/// The one that there is.
inline constexpr SStrict Strict{};

namespace Describing
{

/// @name WriteText, WriteBinary
/// One document, out and in; the root is an object or a sequence of the contract. What is raised by RaiseAt while a
/// text is written leaves as it is; the text writers replace everything else by their own.
/// @{
VELLUM_API std::string WriteText(SDocument& document, const ISerializable& root);
VELLUM_API std::string WriteText(SDocument& document, const ISerializableContainer& root);
VELLUM_API void WriteText(SDocument& document, const ISerializable& root, std::ostream& stream);
VELLUM_API void WriteText(SDocument& document, const ISerializableContainer& root, std::ostream& stream);
VELLUM_API std::vector<unsigned char> WriteBinary(const ISerializable& root);
VELLUM_API std::vector<unsigned char> WriteBinary(const ISerializableContainer& root);
/// @}

VELLUM_API void ReadText(const SDocument& document, ISerializable& root, bool isStrict);
VELLUM_API void ReadText(const SDocument& document, ISerializableContainer& root, bool isStrict);
VELLUM_API void ReadBinary(const SDocument& document, const void* data, std::size_t size, ISerializable& root,
                           bool isStrict);
VELLUM_API void ReadBinary(const SDocument& document, const void* data, std::size_t size, ISerializableContainer& root,
                           bool isStrict);

template <class T>
inline constexpr bool IsRoot = requires
{
    typename SStored<T>::Interface;
};

template <class T>
void CheckRoot()
{
    static_assert(IsRoot<T>, "The root of a document is an object or a sequence, and this type is stored as a value");
}

/// Calls the function with the object or sequence of the contract that a value is, or is made into.
template <class T, class Function>
void CallWithRoot(const T& value, const SDocument& document, const Function& function)
{
    if constexpr (FindStorage<T>() == EStorage::Object)
        function(static_cast<const ISerializable&>(value));
    else if constexpr (FindStorage<T>() == EStorage::Container)
        function(static_cast<const ISerializableContainer&>(value));
    else if constexpr (IsRoot<T>)
    {
        const typename SStored<T>::Out adapter(value, SPlace{&document});
        function(static_cast<const typename SStored<T>::Interface&>(adapter));
    }
    else if constexpr (FindStorage<T>() != EStorage::None)
        CheckRoot<T>();
}

template <bool IsStrict, class T, class Function>
void CallWithRoot(T& value, const SDocument& document, const Function& function)
{
    if constexpr (FindStorage<T>() == EStorage::Object)
        function(static_cast<ISerializable&>(value));
    else if constexpr (FindStorage<T>() == EStorage::Container)
        function(static_cast<ISerializableContainer&>(value));
    else if constexpr (IsRoot<T>)
    {
        typename SStored<T>::template In<IsStrict> adapter(value, SPlace{&document});
        function(static_cast<typename SStored<T>::Interface&>(adapter));
    }
    else if constexpr (FindStorage<T>() != EStorage::None)
        CheckRoot<T>();
}

template <class T>
std::string ToText(const T& value, EFormat format, const char* function)
{
    std::string text;
    SDocument document{format, function};
    CallWithRoot(value, document, [&](const auto& root) { text = WriteText(document, root); });
    return text;
}

template <class T>
void ToText(const T& value, EFormat format, const char* function, std::ostream& stream)
{
    SDocument document{format, function};
    CallWithRoot(value, document, [&](const auto& root) { WriteText(document, root, stream); });
}

template <bool IsStrict, class T>
void FromText(const char* text, T& value, EFormat format, const char* function)
{
    const SDocument document{format, function, text};
    CallWithRoot<IsStrict>(value, document, [&](auto& root) { ReadText(document, root, IsStrict); });
}

template <bool IsStrict, class T>
void FromBytes(const void* data, std::size_t size, T& value)
{
    const SDocument document{EFormat::Binary, "Vellum::FromBinary"};
    CallWithRoot<IsStrict>(value, document, [&](auto& root) { ReadBinary(document, data, size, root, IsStrict); });
}

/// A text up to its zero byte.
struct SText
{
    SText(const char* terminated) : text(terminated) {}
    SText(const std::string& terminated) : text(terminated.c_str()) {}

    const char* text;
};

template <class... Options>
inline constexpr bool AreOptions = sizeof...(Options) <= 1 && (std::same_as<Options, SStrict> && ...);

/// A new object, filled.
template <class T, class Function>
T MakeFilled(const Function& fill)
{
    if constexpr (std::default_initializable<T>)
    {
        T value{};
        fill(value);
        return value;
    }
    else
    {
        CheckDefault<T>();
        throw; // doesn't get that far
    }
}

} // namespace Describing

// ---- A value to a document. ----

/// @file
/// The value is what a document may have as its root: a described class, an aggregate, a map with text keys, a variant,
/// a container, or a class that implements ISerializable or ISerializableContainer. A pointer or a std::optional is
/// none.
///
/// - **Errors** CDocumentException for a value that can't be stored: a date that is out of range, an enumerator without
///   a name, a key of a map that the format can't hold. Otherwise those of CWriterJson, CWriterXml and CWriterBinary.
/// - **Threads** Any thread; distinct calls share nothing but the value.

/// The JSON document of a value, as CWriterJson writes it.
template <class T>
std::string ToJson(const T& value)
{
    return Describing::ToText(value, EFormat::Json, "Vellum::ToJson");
}

/// The same onto a stream, whose flags and locale don't matter. A stream that can't take it tells by its state.
template <class T>
void ToJson(const T& value, std::ostream& stream)
{
    Describing::ToText(value, EFormat::Json, "Vellum::ToJson", stream);
}

/// The XML document of a value, as CWriterXml writes it.
template <class T>
std::string ToXml(const T& value)
{
    return Describing::ToText(value, EFormat::Xml, "Vellum::ToXml");
}

/// The same, to a stream.
template <class T>
void ToXml(const T& value, std::ostream& stream)
{
    Describing::ToText(value, EFormat::Xml, "Vellum::ToXml", stream);
}

/// The binary document of a value, as CWriterBinary writes it.
template <class T>
std::vector<unsigned char> ToBinary(const T& value)
{
    std::vector<unsigned char> bytes;
    const Describing::SDocument document{EFormat::Binary, "Vellum::ToBinary"};
    Describing::CallWithRoot(value, document, [&](const auto& root) { bytes = Describing::WriteBinary(root); });
    return bytes;
}

// ---- A document to a value. ----

/// @file
/// Each comes in four forms: a new object is made and returned, or one that exists is filled; and both with Strict.
/// Fields that the document doesn't have keep what they hold, but for pointers and std::optional: where there is
/// nothing, they become empty. What was read before a failure stays in the object.
///
/// - **Strict** raises CDocumentException, with the path of the place, for everything that reading otherwise passes
///   over or makes something of: a key that nobody asks for, a value of another kind, a number that doesn't fit its
///   type or isn't one all through, a text that is no bool, a null in a sequence, an array with another number of
///   elements, an XML document that the parser rejects or whose root has another name. What a hand-written class reads
///   is read as it likes.
/// - **Errors** CDocumentException for a required field that is missing and for an alternative that isn't listed.
///   Without Strict, otherwise those of CReaderJson, CReaderXml and CReaderBinary; with it, theirs are told by
///   CDocumentException. What a client's Read or upgrade raises passes through.

/// @name FromJson
/// A JSON text, zero-terminated.
/// @{
template <class T, class... Options>
requires Describing::AreOptions<Options...>
void FromJson(const Describing::SText& text, T& value, Options...)
{
    Describing::FromText<sizeof...(Options) != 0>(text.text, value, EFormat::Json, "Vellum::FromJson");
}
template <class T, class... Options>
requires Describing::AreOptions<Options...> T FromJson(const Describing::SText& text, Options... options)
{
    return Describing::MakeFilled<T>([&](T& value) { FromJson(text, value, options...); });
}
/// @}

/// @name FromXml
/// An XML text, zero-terminated.
/// @{
template <class T, class... Options>
requires Describing::AreOptions<Options...>
void FromXml(const Describing::SText& text, T& value, Options...)
{
    Describing::FromText<sizeof...(Options) != 0>(text.text, value, EFormat::Xml, "Vellum::FromXml");
}
template <class T, class... Options>
requires Describing::AreOptions<Options...> T FromXml(const Describing::SText& text, Options... options)
{
    return Describing::MakeFilled<T>([&](T& value) { FromXml(text, value, options...); });
}
/// @}

/// @name FromBinary
/// A binary document: a container of bytes in one piece, or `CbArray<unsigned char>`. With Strict, nothing may stand
/// behind it.
/// @{
template <class T, Describing::DocumentBytes Bytes, class... Options>
requires Describing::AreOptions<Options...>
void FromBinary(const Bytes& bytes, T& value, Options...)
{
    const auto [data, size] = Describing::GetBytes(bytes);
    Describing::FromBytes<sizeof...(Options) != 0>(data, size, value);
}
template <class T, Describing::DocumentBytes Bytes, class... Options>
requires Describing::AreOptions<Options...> T FromBinary(const Bytes& bytes, Options... options)
{
    return Describing::MakeFilled<T>([&](T& value) { FromBinary(bytes, value, options...); });
}
/// @}

// ---- A value among those of a hand-written class. ----

/// A value as an object or a sequence of the contract, for the time of one expression:
///
///     CWriterBinary(stream).Write(Vellum::Stored(order));
template <class T>
requires Describing::IsRoot<T>
auto Stored(const T& value)
{
    return typename Describing::SStored<T>::Out(value, Describing::SPlace{&Describing::UnknownDocument});
}

/// The same to be read into: auto stored = Vellum::Filled(order); reader.Read(stored);
template <class T>
requires Describing::IsRoot<T>
auto Filled(T& value)
{
    return typename Describing::SStored<T>::template In<false>(value, Describing::SPlace{&Describing::UnknownDocument});
}

/// @name WriteField ... ReadElement
/// Write or read one field or element of any type that can be stored, in the Write or Read of a hand-written class.
/// @{
template <class T>
void WriteField(IDataWriter& writer, const char* key, const T& value)
{
    const Describing::SPlace place{&Describing::UnknownDocument};
    Describing::WriteValue(value, Describing::SFieldOut{writer, key, place});
}
template <class T>
bool ReadField(IDataReader& reader, const char* key, T& value)
{
    const Describing::SPlace place{&Describing::UnknownDocument};
    return Describing::ReadValue(value, Describing::SFieldIn<false>{reader, key, place});
}
template <class T>
void WriteElement(IContainerWriter& writer, const T& value)
{
    const Describing::SPlace place{&Describing::UnknownDocument};
    Describing::WriteValue(value, Describing::SElementOut{writer, 0, place});
}
template <class T>
bool ReadElement(IContainerReader& reader, std::uint32_t index, T& value)
{
    const Describing::SPlace place{&Describing::UnknownDocument};
    return Describing::ReadValue(value, Describing::SElementIn<false>{reader, index, place});
}
/// @}

} // namespace Vellum
