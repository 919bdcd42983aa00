#define _FILE_OFFSET_BITS 64 // sizes beyond 2 GiB, on 32-bit systems too

#include "Platform/CNewFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "Platform/ForcedUnwind.h"
#include "Platform/Posix/Descriptor.h"

namespace Vellum::Platform
{
namespace
{

constexpr int MostNames = 1000;

int Descriptor(std::intptr_t handle) noexcept { return static_cast<int>(handle); }

std::error_code LastError() noexcept { return {errno, std::system_category()}; }

// Where a file is to be: behind all links, also where there is no file yet.
std::filesystem::path FollowLinks(std::filesystem::path target)
{
    constexpr int MostLinks = 40;
    std::error_code error;
    for (int links = 0; links < MostLinks && std::filesystem::is_symlink(target, error); ++links)
    {
        const std::filesystem::path next = std::filesystem::read_symlink(target, error);
        if (error)
            break;
        target = target.parent_path() / next; // an absolute one stands alone
    }
    return target;
}

// The same in another process, or again in this one, is tried under the next number.
std::filesystem::path MakeName(const std::filesystem::path& place, int number)
{
    std::filesystem::path name = place;
    name += ".new" + std::to_string(::getpid()) + '-' + std::to_string(number);
    return name;
}

// That a folder knows its file is lost with it otherwise. Not every file system can be asked for that.
void FlushFolder(const std::filesystem::path& place) noexcept
{
    const std::string folder = place.has_parent_path() ? place.parent_path().native() : ".";
    const int descriptor = Resume([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (descriptor == -1)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

// Closes a descriptor at the end of a block.
struct SDescriptor
{
    ~SDescriptor() { ::close(number); }
    int number;
};

} // namespace

CNewFile::~CNewFile()
{
    if (handle == NoHandle)
        return;
    const CNoCancellation scope;
    ::close(Descriptor(handle));
    ::unlink(name.c_str());
}

std::error_code CNewFile::Create(const std::filesystem::path& target)
{
    const CNoCancellation scope;
    place = FollowLinks(target);
    struct stat replaced = {};
    const bool isReplacement = ::stat(place.c_str(), &replaced) == 0;
    if (isReplacement && !S_ISREG(replaced.st_mode))
        return std::make_error_code(S_ISDIR(replaced.st_mode) ? std::errc::is_a_directory
                                                              : std::errc::invalid_argument);
    if (isReplacement && ::access(place.c_str(), W_OK) != 0)
        return LastError();
    for (int number = 0; handle == NoHandle && number < MostNames; ++number)
    {
        name = MakeName(place, number);
        handle = Resume([&] { return ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666); });
        if (handle == NoHandle && errno != EEXIST)
            break;
    }
    if (handle == NoHandle || (isReplacement && ::fchmod(Descriptor(handle), replaced.st_mode & 07777) != 0))
        return LastError();
    return {};
}

std::error_code CNewFile::Write(const void* data, std::size_t count) noexcept
{
    return WriteToDescriptor(Descriptor(handle), data, count) ? std::error_code() : LastError();
}

std::error_code CNewFile::PutInPlace() noexcept
{
    const CNoCancellation scope;
    if (Resume([&] { return ::fsync(Descriptor(handle)); }) != 0)
        return LastError();
    if (std::rename(name.c_str(), place.c_str()) != 0)
        return LastError();
    ::close(Descriptor(std::exchange(handle, NoHandle))); // everything is on the disk already
    FlushFolder(place);
    return {};
}

std::error_code ReadWholeFile(const std::filesystem::path& name, std::string& bytes)
{
    const CNoCancellation scope;
    constexpr std::size_t LeastPiece = 4096;
    const SDescriptor file{Resume([&] { return ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY); })};
    if (file.number == -1)
        return LastError();
    struct stat status = {};
    if (::fstat(file.number, &status) != 0)
        return LastError();
    bytes.clear();
    std::size_t used = 0;
    std::size_t piece = std::max(static_cast<std::size_t>(status.st_size) + 1, LeastPiece); // one more meets the end
    while (true)
    {
        bytes.resize(used + piece);
        const ::ssize_t got =
            Resume([&] { return ::read(file.number, bytes.data() + used, std::min(piece, MostAtOnce)); });
        if (got < 0)
            return LastError();
        used += static_cast<std::size_t>(got);
        bytes.resize(used);
        if (got == 0)
            return {};
        piece = std::max(used, LeastPiece);
    }
}

} // namespace Vellum::Platform
