#include "Groundwork/CbStreamReadBinaryFile.h"

#include "Platform/CFile.h"

#include "Groundwork/CbExceptions.h"

namespace
{

constexpr std::uint32_t BufferSize = 0x10000;

} // namespace

CbStreamReadBinaryFile::CbStreamReadBinaryFile(const std::wstring& fileName)
    : file(std::make_unique<Vellum::Platform::CFile>()), buffer(BufferSize)
{
    if (!file->OpenForReading(fileName, Vellum::Platform::CFile::EPipes::Await))
        throw CbExceptionStream(__FILE__, __LINE__, "CbStreamReadBinaryFile::CbStreamReadBinaryFile");
}

CbStreamReadBinaryFile::~CbStreamReadBinaryFile() = default;

std::uint64_t CbStreamReadBinaryFile::Read(void* data, std::size_t count)
{
    auto* const to = static_cast<unsigned char*>(data);
    std::size_t delivered = takeBuffered(to, count);
    if (delivered == count)
        return delivered;
    if (count - delivered >= BufferSize)
        return delivered + readFile(to + delivered, count - delivered);
    next = 0;
    last = 0; // first: when the next line raises, the buffer is empty
    last = readFile(buffer.GetData(), BufferSize);
    return delivered + takeBuffered(to + delivered, count - delivered);
}

std::size_t CbStreamReadBinaryFile::takeBuffered(unsigned char* to, std::size_t count) noexcept
{
    const std::size_t taken = std::min(count, last - next);
    if (taken != 0)
        std::memcpy(to, buffer.GetData() + next, taken);
    next += taken;
    return taken;
}

std::size_t CbStreamReadBinaryFile::readFile(unsigned char* to, std::size_t count)
{
    const std::optional<std::size_t> moved = file->Read(to, count);
    if (!moved)
        throw CbExceptionStream(__FILE__, __LINE__, "CbStreamReadBinaryFile::Read");
    return *moved;
}
