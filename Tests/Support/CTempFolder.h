#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "Platform/Utf8.h"

#include "Support/System.h"

namespace Support
{

// A new folder of one's own, removed with everything in it.
class CTempFolder
{
public:
    CTempFolder() : path(MakeTempFolder()) {}
    ~CTempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    CTempFolder(const CTempFolder&) = delete;
    CTempFolder& operator=(const CTempFolder&) = delete;

    const std::filesystem::path& GetPath() const { return path; }

    // A file in the folder, by its name in UTF-8.
    std::filesystem::path GetPath(const std::string& utf8) const
    {
        return path / std::u8string(utf8.begin(), utf8.end());
    }
    // ... and as the library takes it.
    std::wstring GetName(const std::string& utf8) const
    {
        const std::u8string name = GetPath(utf8).u8string();
        return Vellum::Platform::Utf8ToUtf16(std::string(name.begin(), name.end()));
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

} // namespace Support
