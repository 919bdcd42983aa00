#pragma once

#include <concepts>
#include <string>
#include <utility>

#include "Describe/Documents.h"

namespace Vellum
{

namespace Describing
{

/// The name of a file: text in the encoding of the system's names, or a std::filesystem::path, whose header isn't
/// included here.
struct SFileName
{
    SFileName(const char* text) : name(text) {}
    SFileName(std::string text) : name(std::move(text)) {}
    template <PathLike Path>
    SFileName(const Path& path) : name(path.string())
    {
    }

    std::string name;
};

/// The format that the extension of a name tells.
VELLUM_API EFormat FindFormat(const SFileName& name);

VELLUM_API void SaveDocument(const SFileName& name, SDocument& document, const ISerializable& root);
VELLUM_API void SaveDocument(const SFileName& name, SDocument& document, const ISerializableContainer& root);

/// The whole file; its text, if the document is one, becomes the document's.
VELLUM_API std::string ReadDocument(const SFileName& name);

VELLUM_API void LoadDocument(const SFileName& name, const SDocument& document, const std::string& bytes,
                             ISerializable& root, bool isStrict);
VELLUM_API void LoadDocument(const SFileName& name, const SDocument& document, const std::string& bytes,
                             ISerializableContainer& root, bool isStrict);

template <class T>
concept LoadOption = std::same_as<T, SStrict> || std::same_as<T, EFormat>;

constexpr EFormat GetFormat(SStrict) { return EFormat::Any; }
constexpr EFormat GetFormat(EFormat format) { return format; }

} // namespace Describing

/// Saves a value as a document. Without a format the extension of the name decides: .json, .xml, in any case, and
/// anything else is binary.
///
/// The document is written into a new file beside the target, flushed to the disk, and renamed to the target, whose
/// permissions it takes over; its folder must exist. When anything fails the old file is as it was. Texts and the bytes
/// of a binary document go to the file as they are made, so that it isn't a second time in memory.
///
/// Raises what ToJson, ToXml and ToBinary raise, and CDocumentException, with the name of the file and the system's
/// reason, when it can't be written.
template <class T>
void Save(const Describing::SFileName& name, const T& value, EFormat format = EFormat::Any)
{
    Describing::SDocument document{format == EFormat::Any ? Describing::FindFormat(name) : format, "Vellum::Save"};
    Describing::CallWithRoot(value, document, [&](const auto& root) { SaveDocument(name, document, root); });
}

/// @name Load
/// Loads what Save has saved, into an object that exists or into a new one. Options are Strict and a format, in any
/// order.
///
/// Raises CDocumentException with the name of the file: with the system's reason when it can't be read, and when it
/// holds no document of its format or none whose root has the value's type name. Otherwise as FromJson, FromXml and
/// FromBinary.
/// @{
template <class T, Describing::LoadOption... Options>
void Load(const Describing::SFileName& name, T& value, Options... options)
{
    EFormat format = EFormat::Any;
    ((format = Describing::GetFormat(options) != EFormat::Any ? Describing::GetFormat(options) : format), ...);
    constexpr bool IsStrict = (std::same_as<Options, SStrict> || ...);
    const std::string bytes = Describing::ReadDocument(name);
    const Describing::SDocument document{format == EFormat::Any ? Describing::FindFormat(name) : format, "Vellum::Load",
                                         bytes.c_str()};
    Describing::CallWithRoot<IsStrict>(
        value, document, [&](auto& root) { Describing::LoadDocument(name, document, bytes, root, IsStrict); });
}
template <class T, Describing::LoadOption... Options>
T Load(const Describing::SFileName& name, Options... options)
{
    return Describing::MakeFilled<T>([&](T& value) { Load(name, value, options...); });
}
/// @}

} // namespace Vellum
