#include "Input.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <utility>
#include <vector>

#include "CProgress.h"

namespace
{

// File names are what the program was started with: UTF-8 where that has to become wide text, bytes elsewhere.
std::filesystem::path ToPath(const std::string& name) { return std::u8string(name.begin(), name.end()); }

// A file that is made when the first byte is written.
class CLateFile : public std::filebuf
{
public:
    explicit CLateFile(std::string fileName) : name(std::move(fileName)) {}

private:
    int_type overflow(int_type byte) override { return isThere() ? std::filebuf::overflow(byte) : traits_type::eof(); }
    std::streamsize xsputn(const char* bytes, std::streamsize size) override
    {
        return isThere() ? std::filebuf::xsputn(bytes, size) : 0;
    }
    bool isThere() { return is_open() || open(ToPath(name), std::ios::out | std::ios::binary) != nullptr; }

    std::string name;
};

[[noreturn]] void Fail(const std::string& name, const char* what)
{
    throw std::runtime_error(GetShownName(name) + ' ' + what);
}

std::string ReadAll(std::istream& stream, const std::string& name, std::uint64_t size)
{
    CProgress progress("reading " + (name == "-" ? "standard input" : name), size);
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(size));
    std::vector<char> piece(1 << 16);
    while (stream.read(piece.data(), static_cast<std::streamsize>(piece.size())) || stream.gcount() != 0)
    {
        bytes.append(piece.data(), static_cast<std::size_t>(stream.gcount()));
        progress.Advance(bytes.size());
    }
    if (stream.bad())
        Fail(name, "can't be read.");
    return bytes;
}

} // namespace

std::string GetShownName(const std::string& name) { return name == "-" ? "Standard input" : name; }

std::string ReadInput(const std::string& name)
{
    if (name == "-")
        return ReadAll(std::cin, name, 0);
    const std::filesystem::path path = ToPath(name);
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) // systems and standard libraries tell that sooner or later, or not
        Fail(name, "can't be read.");
    std::ifstream file(path, std::ios::binary);
    if (!file)
        Fail(name, "can't be opened.");
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    return ReadAll(file, name, error ? 0 : size);
}

Vellum::EFormat Recognize(std::string_view document)
{
    if (document.starts_with("\xEF\xBB\xBF"))
        document.remove_prefix(3);
    const std::size_t start = document.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos)
        return Vellum::EFormat::Any;
    if (document[start] == '{' || document[start] == '[')
        return Vellum::EFormat::Json;
    if (document[start] == '<')
        return Vellum::EFormat::Xml;
    // A number of four bytes, the lowest first, which will be small for long, and the tag of the root.
    const bool isBinary = document.size() > 4 && document.substr(1, 3) == std::string_view("\0\0\0", 3) &&
                          (document[4] == '\x10' || document[4] == '\x11');
    return isBinary ? Vellum::EFormat::Binary : Vellum::EFormat::Any;
}

const char* GetName(Vellum::EFormat format)
{
    static constexpr std::array<const char*, 4> Names{"unknown", "binary", "json", "xml"};
    return Names.at(static_cast<std::size_t>(format));
}

void WriteOutput(const std::string& name, const std::function<void(std::ostream&)>& write)
{
    if (name == "-")
        return write(std::cout); // whether all has arrived is found out at the end
    CLateFile file(name);
    std::ostream stream(&file);
    write(stream);
    if (!stream.flush())
        Fail(name, file.is_open() ? "can't be written." : "can't be created.");
}
