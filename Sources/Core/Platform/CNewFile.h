#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

namespace Vellum::Platform
{

// CNewFile: a file that takes the place of another one when it is complete. Until then it lies beside it under a name
// that nobody has; the destructor removes one that was never put into its place. Every operation gives the system's
// error, or none; only a failed allocation is raised.
//
// Place    A symbolic link stays one, the file that it leads to is replaced. A file that is replaced hands its
//          permissions on.
// Threads  A file belongs to one thread at a time.
class CNewFile
{
public:
    CNewFile() = default;
    CNewFile(const CNewFile&) = delete;
    CNewFile& operator=(const CNewFile&) = delete;
    ~CNewFile();

    // Makes the file. Its folder must exist. Called once.
    std::error_code Create(const std::filesystem::path& target);

    // Appends all of the `count` bytes.
    std::error_code Write(const void* data, std::size_t count) noexcept;

    // Has everything written to the disk and puts the file into its place, in one step for everybody who looks.
    std::error_code PutInPlace() noexcept;

private:
    static constexpr std::intptr_t NoHandle = -1;

    std::filesystem::path place;
    std::filesystem::path name; // until it is in its place
    std::intptr_t handle = NoHandle;
};

// Replaces `bytes` by the whole content of a file, up to its end if it has no size, as a pipe. The system's error, or
// none.
std::error_code ReadWholeFile(const std::filesystem::path& name, std::string& bytes);

} // namespace Vellum::Platform
