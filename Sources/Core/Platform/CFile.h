#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace Vellum::Platform
{

// CFile: one of the system's files, read or written from front to back. Every operation tells by its result whether it
// succeeded; only a failed allocation is raised. The destructor closes the file.
//
// Sharing  A file that is open for reading may be read by others at the same time; one that is open for writing is
//          nobody else's. This binds whoever opens files through this class, in this process or another, on file
//          systems that have locks. Pipes and devices are everybody's.
// Names    UTF-16, one code unit in each element, up to the first NUL; see FilePath.h.
// Threads  A file belongs to one thread at a time. A thread isn't cancelled inside.
class CFile
{
public:
    // No file.
    CFile() noexcept = default;

    // The file passes over; the other object has none afterwards. A file that this object had open before is closed.
    CFile(CFile&& other) noexcept;
    CFile& operator=(CFile&& other) noexcept;
    ~CFile();

    // What becomes of a name that is a pipe's.
    enum class EPipes
    {
        Refuse, // it can't be had, whoever has its other end open
        Await   // it is opened once its other end is
    };

    // Opens a file that exists and is no folder. False if that can't be had, or if someone writes the file. A file that
    // this object had open before is closed.
    bool OpenForReading(const std::wstring& name, EPipes pipes = EPipes::Refuse);

    // Opens a file that is created or emptied; it is no folder. False if that can't be had; if someone reads or writes
    // the file it stays as it was. A file that this object had open before is closed.
    bool OpenForWriting(const std::wstring& name, EPipes pipes = EPipes::Refuse);

    // Whether the object has a file.
    bool IsOpen() const noexcept { return handle != NoHandle; }

    // In bytes; nothing if the system doesn't tell, as for a pipe.
    std::optional<std::uint64_t> GetSize() const noexcept;

    // False if the file is known to have fewer than `count` bytes. Nothing is known of pipes and devices.
    bool MayHold(std::uint64_t count) const noexcept;

    // Fills `count` bytes and returns how many there were: fewer than `count` only at the end of the file. Nothing if
    // the system fails to read. Interruptions and partial transfers are gone through, and there is no limit to `count`.
    std::optional<std::size_t> Read(void* data, std::size_t count) noexcept;

    // Writes all of the `count` bytes, in the same way. False if that fails: any part of them may then have been
    // written. That the process may not make the file larger, or that nobody reads the pipe that it is, are such
    // failures too; the signals that would end the process are held back.
    bool Write(const void* data, std::size_t count) noexcept;

    // False if the system tells only now that something went wrong, or if no file is open. The file is closed anyway.
    bool Close() noexcept;

private:
    static constexpr std::intptr_t NoHandle = -1;

    bool open(const std::wstring& name, bool writes, EPipes pipes);

    std::intptr_t handle = NoHandle; // the system's
};

} // namespace Vellum::Platform
