#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <stdlib.h>
#include <string>

#include "Platform/Utf8.h"

namespace Support
{

// A new folder of one's own, removed with everything in it.
class CTempFolder
{
public:
    CTempFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "VellumTest-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        path = name;
    }
    ~CTempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    CTempFolder(const CTempFolder&) = delete;
    CTempFolder& operator=(const CTempFolder&) = delete;

    const std::filesystem::path& GetPath() const { return path; }

    // Of a file in the folder, as the library takes it.
    std::wstring GetName(const std::string& utf8) const
    {
        return Vellum::Platform::Utf8ToUtf16((path / utf8).string());
    }

private:
    std::filesystem::path path;
};

inline std::string ReadWhole(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void WriteWhole(const std::filesystem::path& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

// How many files this process has open.
inline std::ptrdiff_t CountOpenFiles()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

} // namespace Support
