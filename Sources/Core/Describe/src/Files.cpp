#include "Describe/Files.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <ostream>
#include <streambuf>
#include <string>
#include <system_error>

#include "Platform/CNewFile.h"
#include "Platform/TextCompare.h"

#include "Groundwork/CbStreamWriteBinary.h"

#include "Vellum/CDocumentException.h"
#include "Vellum/CReaderXml.h"
#include "Vellum/CWriterBinary.h"

#include "Describe/src/DocumentText.h"

namespace Vellum::Describing
{
namespace
{

// A new file that gathers small pieces. It keeps the first error, since streams don't tell what went wrong.
class CGatheringFile
{
public:
    explicit CGatheringFile(const SFileName& name) : error(file.Create(name.name)) {}

    void Write(const char* data, std::size_t count)
    {
        if (count > pending.size() - used)
            flush();
        if (count >= pending.size())
            return write(data, count);
        std::copy_n(data, count, pending.data() + used);
        used += count;
    }

    std::error_code Finish()
    {
        flush();
        if (!error)
            error = file.PutInPlace();
        return error;
    }

    std::error_code GetError() const { return error; }

private:
    void flush() { write(pending.data(), std::exchange(used, 0)); }
    void write(const char* data, std::size_t count)
    {
        if (!error && count != 0)
            error = file.Write(data, count);
    }

    Platform::CNewFile file;
    std::error_code error;
    std::size_t used = 0;
    std::array<char, 32768> pending;
};

class CTextTarget final : public std::streambuf
{
public:
    explicit CTextTarget(CGatheringFile& target) : file(target) {}

private:
    std::streamsize xsputn(const char* text, std::streamsize count) override
    {
        file.Write(text, static_cast<std::size_t>(count));
        return file.GetError() ? 0 : count;
    }
    int_type overflow(int_type character) override
    {
        const char byte = traits_type::to_char_type(character);
        return xsputn(&byte, 1) == 1 ? character : traits_type::eof();
    }

    CGatheringFile& file;
};

class CBinaryTarget final : public CbStreamWriteBinary
{
public:
    explicit CBinaryTarget(CGatheringFile& target) : file(target) {}

    using CbStreamWriteBinary::Write;
    CbStreamWriteBinary& Write(const void* data, std::size_t count) override
    {
        file.Write(static_cast<const char*>(data), count);
        return *this;
    }

private:
    CGatheringFile& file;
};

[[noreturn]] void RaiseFor(const char* function, const SFileName& name, SDocumentFailure failure)
{
    failure.file = name.name;
    throw CDocumentException(__FILE__, __LINE__, function, std::move(failure));
}

[[noreturn]] void RaiseFor(const char* function, const SFileName& name, std::error_code error)
{
    RaiseFor(function, name, SDocumentFailure{error.message() + '.'});
}

template <class Root>
void WriteInto(CGatheringFile& file, SDocument& document, const Root& root)
{
    if (document.format == EFormat::Binary)
    {
        CBinaryTarget target(file);
        CWriterBinary(target).Write(root);
        return;
    }
    CTextTarget target(file);
    std::ostream stream(&target);
    WriteText(document, root, stream);
}

template <class Root>
void SaveRoot(const SFileName& name, SDocument& document, const Root& root)
try
{
    CGatheringFile file(name);
    if (!file.GetError())
        WriteInto(file, document, root);
    if (const std::error_code error = file.Finish())
        RaiseFor("Vellum::Save", name, error);
}
catch (const CDocumentException& exception)
{
    if (*exception.GetFile() != '\0')
        throw;
    RaiseFor("Vellum::Save", name, exception.GetFailure());
}

template <class Root>
void LoadRoot(const SFileName& name, const SDocument& document, const std::string& bytes, Root& root, bool isStrict)
try
{
    if (document.format == EFormat::Binary)
        return ReadBinary(document, bytes.data(), bytes.size(), root, isStrict);
    CheckText(document, root.GetTypeName(), std::same_as<Root, ISerializableContainer>, isStrict);
    ReadText(document, root, false);
}
catch (const CDocumentException& exception)
{
    RaiseFor("Vellum::Load", name, exception.GetFailure());
}
catch (const IException& exception)
{
    RaiseFor("Vellum::Load", name, SDocumentFailure{DescribeRefusal(exception)});
}

} // namespace

EFormat FindFormat(const SFileName& name)
{
    const std::string extension = std::filesystem::path(name.name).extension().string();
    const auto is = [&](const char* other) { return Platform::CompareWithoutCase(extension.c_str(), other) == 0; };
    return is(".json") ? EFormat::Json : is(".xml") ? EFormat::Xml : EFormat::Binary;
}

void SaveDocument(const SFileName& name, SDocument& document, const ISerializable& root)
{
    SaveRoot(name, document, root);
}
void SaveDocument(const SFileName& name, SDocument& document, const ISerializableContainer& root)
{
    SaveRoot(name, document, root);
}

std::string ReadDocument(const SFileName& name)
{
    std::string bytes;
    if (const std::error_code error = Platform::ReadWholeFile(name.name, bytes))
        RaiseFor("Vellum::Load", name, error);
    return bytes;
}

void LoadDocument(const SFileName& name, const SDocument& document, const std::string& bytes, ISerializable& root,
                  bool isStrict)
{
    LoadRoot(name, document, bytes, root, isStrict);
}
void LoadDocument(const SFileName& name, const SDocument& document, const std::string& bytes,
                  ISerializableContainer& root, bool isStrict)
{
    LoadRoot(name, document, bytes, root, isStrict);
}

} // namespace Vellum::Describing
