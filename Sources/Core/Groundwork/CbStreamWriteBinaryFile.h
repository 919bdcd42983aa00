#pragma once

#include <memory>
#include <string>

#include "Groundwork/CbArray.h"
#include "Groundwork/CbStreamWriteBinary.h"

namespace Vellum::Platform
{
class CFile;
}

/// CbStreamWriteBinaryFile: a stream into a file, buffered. While it is open nobody else may read or write the file.
///
/// - **Errors** CbExceptionStream with the function name of the operation. The system may tell of a full disk only when
///   the last bytes leave the buffer or the file is closed, so call Close when a document is complete. A stream that
///   has failed once stays failed: each operation raises, and what the file holds is left open.
class VELLUM_API CbStreamWriteBinaryFile final : public CbStreamWriteBinary
{
public:
    /// Creates the file or empties it; its folder must exist. The name is UTF-16, one code unit in each element. Raises
    /// "CbStreamWriteBinaryFile::CbStreamWriteBinaryFile" if the file can't be opened; one that others use stays as it
    /// was. A pipe is waited for until somebody reads from it.
    explicit CbStreamWriteBinaryFile(const std::wstring& fileName);
    CbStreamWriteBinaryFile(const CbStreamWriteBinaryFile&) = delete;
    CbStreamWriteBinaryFile& operator=(const CbStreamWriteBinaryFile&) = delete;

    /// Closes the file. A failure to write the last bytes passes in silence: call Close to learn of it.
    ~CbStreamWriteBinaryFile() override;

    /// Appends `count` bytes; long runs go to the file without a detour. Raises "CbStreamWriteBinaryFile::Write", also
    /// after Close.
    using CbStreamWriteBinary::Write;
    CbStreamWriteBinaryFile& Write(const void* data, std::size_t count) override;

    /// Hands everything written so far to the system. Raises "CbStreamWriteBinaryFile::Flush", also after Close.
    void Flush();

    /// Flushes and closes the file. Raises "CbStreamWriteBinaryFile::Close" if that fails or if the stream has failed
    /// before; the file is closed anyway. Does nothing when called again.
    void Close();

private:
    bool append(const void* data, std::size_t count) noexcept;
    bool flush() noexcept;

    std::unique_ptr<Vellum::Platform::CFile> file; // never null
    CbArray<unsigned char> buffer;                 // never grows
    bool failed = false;
};
