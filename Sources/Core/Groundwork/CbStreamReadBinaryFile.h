#pragma once

#include <memory>
#include <string>

#include "Groundwork/CbArray.h"
#include "Groundwork/CbStreamReadBinary.h"

namespace Vellum::Platform
{
class CFile;
}

/// CbStreamReadBinaryFile: a stream from a file, buffered. While it lives others may read the file too, but not write
/// it; the destructor closes it.
class VELLUM_API CbStreamReadBinaryFile final : public CbStreamReadBinary
{
public:
    /// The name is UTF-16, one code unit in each element. Raises CbExceptionStream,
    /// "CbStreamReadBinaryFile::CbStreamReadBinaryFile", if there is no such file, if it is a folder, if it can't be
    /// read or if somebody writes it. A pipe is waited for until somebody writes to it.
    explicit CbStreamReadBinaryFile(const std::wstring& fileName);
    CbStreamReadBinaryFile(const CbStreamReadBinaryFile&) = delete;
    CbStreamReadBinaryFile& operator=(const CbStreamReadBinaryFile&) = delete;
    ~CbStreamReadBinaryFile() override;

    /// Delivers fewer than `count` bytes only at the end of the file; long runs come from the file without a detour.
    /// Raises CbExceptionStream, "CbStreamReadBinaryFile::Read", if the system fails to read.
    using CbStreamReadBinary::Read;
    std::uint64_t Read(void* data, std::size_t count) override;

private:
    std::size_t takeBuffered(unsigned char* to, std::size_t count) noexcept;
    std::size_t readFile(unsigned char* to, std::size_t count);

    std::unique_ptr<Vellum::Platform::CFile> file; // never null
    CbArray<unsigned char> buffer;
    std::size_t next = 0; // in the buffer: from here ...
    std::size_t last = 0; // ... to here lies what has been read from the file and not yet been taken
};
