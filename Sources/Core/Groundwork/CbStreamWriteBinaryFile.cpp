#include "Groundwork/CbStreamWriteBinaryFile.h"

#include "Platform/CFile.h"

#include "Groundwork/CbExceptions.h"

namespace
{

constexpr std::uint32_t BufferSize = 0x10000;

} // namespace

CbStreamWriteBinaryFile::CbStreamWriteBinaryFile(const std::wstring& fileName)
    : file(std::make_unique<Vellum::Platform::CFile>())
{
    buffer.Reserve(BufferSize); // before the file is touched
    if (!file->OpenForWriting(fileName, Vellum::Platform::CFile::EPipes::Await))
        throw CbExceptionStream(__FILE__, __LINE__, "CbStreamWriteBinaryFile::CbStreamWriteBinaryFile");
}

CbStreamWriteBinaryFile::~CbStreamWriteBinaryFile()
{
    if (file->IsOpen())
        flush();
}

CbStreamWriteBinaryFile& CbStreamWriteBinaryFile::Write(const void* data, std::size_t count)
{
    if (!append(data, count))
        throw CbExceptionStream(__FILE__, __LINE__, "CbStreamWriteBinaryFile::Write");
    return *this;
}

void CbStreamWriteBinaryFile::Flush()
{
    if (!flush())
        throw CbExceptionStream(__FILE__, __LINE__, "CbStreamWriteBinaryFile::Flush");
}

void CbStreamWriteBinaryFile::Close()
{
    if (!file->IsOpen())
        return;
    const bool flushed = flush();
    const bool closed = file->Close();
    failed = true; // there is nothing to write to any more
    if (!flushed || !closed)
        throw CbExceptionStream(__FILE__, __LINE__, "CbStreamWriteBinaryFile::Close");
}

bool CbStreamWriteBinaryFile::append(const void* data, std::size_t count) noexcept
{
    if (failed)
        return false;
    if (count >= buffer.GetCapacity() - buffer.GetSize())
    {
        if (!flush())
            return false;
        if (count >= BufferSize)
        {
            failed = !file->Write(data, count);
            return !failed;
        }
    }
    buffer.Append(static_cast<const unsigned char*>(data), count);
    return true;
}

bool CbStreamWriteBinaryFile::flush() noexcept
{
    if (!failed)
        failed = !file->Write(buffer.GetData(), buffer.GetSize());
    buffer.SetSize(0);
    return !failed;
}
