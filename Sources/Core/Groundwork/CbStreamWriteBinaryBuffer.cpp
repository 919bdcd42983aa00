#include "Groundwork/CbStreamWriteBinaryBuffer.h"

CbStreamWriteBinaryBuffer::~CbStreamWriteBinaryBuffer() = default;

void CbStreamWriteBinaryBuffer::appendGrowing(const unsigned char* data, std::size_t count)
{
    constexpr std::uint32_t most = std::numeric_limits<std::uint32_t>::max();
    const std::uint32_t size = bytes.GetSize();
    if (count <= most - size && bytes.GetGrownCapacity(std::uint64_t{size} + count) > most)
        bytes.Reserve(most); // doubling has come to its end
    bytes.Append(data, count);
}

void CbStreamWriteBinaryBuffer::reserveGrowing(std::size_t count)
{
    constexpr std::uint32_t most = std::numeric_limits<std::uint32_t>::max();
    const std::uint32_t size = bytes.GetSize();
    if (count > most - size)
        throw std::bad_array_new_length();
    bytes.ReserveUnfilled(std::min<std::uint64_t>(most, bytes.GetGrownCapacity(std::uint64_t{size} + count)));
}
