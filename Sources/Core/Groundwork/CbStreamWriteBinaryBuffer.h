#pragma once

#include "Groundwork/BinaryEncoding.h"
#include "Groundwork/CbArray.h"
#include "Groundwork/CbStreamWriteBinary.h"

/// CbStreamWriteBinaryBuffer: a stream in memory. It holds fewer than 2^32 bytes and grows by doubling; where that
/// would pass 32 bits, to the 2^32 - 1 bytes that it can hold.
///
/// - **Memory** The bytes belong to the stream; they stay where they are until the next Write.
/// - **Errors** std::bad_array_new_length for more bytes than it can hold, otherwise std::bad_alloc. Bytes written
///   before stay.
///
/// The class is final and its operations are inline, so that a call on an object of this class is no virtual call.
class VELLUM_API CbStreamWriteBinaryBuffer final : public CbStreamWriteBinary
{
public:
    /// Room for 4096 bytes at the start, enough for most objects.
    CbStreamWriteBinaryBuffer() : CbStreamWriteBinaryBuffer(4096) {}

    /// Room for `capacity` bytes at the start. With 0 no memory is obtained before the first Write.
    explicit CbStreamWriteBinaryBuffer(std::uint32_t capacity) { bytes.Reserve(capacity); }

    /// A copy has the bytes written so far and goes on alone. A stream that was moved from is empty.
    CbStreamWriteBinaryBuffer(const CbStreamWriteBinaryBuffer&) = default;
    CbStreamWriteBinaryBuffer(CbStreamWriteBinaryBuffer&&) noexcept = default;
    CbStreamWriteBinaryBuffer& operator=(const CbStreamWriteBinaryBuffer&) = default;
    CbStreamWriteBinaryBuffer& operator=(CbStreamWriteBinaryBuffer&&) noexcept = default;
    ~CbStreamWriteBinaryBuffer() override;

    /// @name GetBytes, GetData, GetSize
    /// What has been written, and its size in bytes. The data is null in a stream that has no memory.
    /// @{
    const CbArray<unsigned char>& GetBytes() const noexcept { return bytes; }
    const unsigned char* GetData() const noexcept { return bytes.GetData(); }
    std::uint32_t GetSize() const noexcept { return bytes.GetSize(); }
    /// @}

    /// Grows as one Write of `count` bytes would, for somebody who is about to write as many in pieces.
    void MakeRoom(std::size_t count)
    {
        if (count > bytes.GetCapacity() - bytes.GetSize())
            reserveGrowing(count);
    }

    /// Takes back what was written after the first `size` bytes. Nothing happens if there aren't that many.
    void Truncate(std::uint32_t size) { bytes.SetSize(std::min(size, bytes.GetSize())); }

    using CbStreamWriteBinary::Write;
    CbStreamWriteBinaryBuffer& Write(const ATL::CStringT<wchar_t>& text) override { return Write(text.c_str()); }
    CbStreamWriteBinaryBuffer& Write(const ATL::CStringT<char>& text) override { return Write(text.c_str()); }
    CbStreamWriteBinaryBuffer& Write(const std::wstring& text) override { return Write(text.c_str()); }
    CbStreamWriteBinaryBuffer& Write(const std::string& text) override { return Write(text.c_str()); }
    CbStreamWriteBinaryBuffer& Write(const wchar_t* text) override { return BinaryEncoding::WriteText(*this, text); }
    CbStreamWriteBinaryBuffer& Write(const char* text) override { return BinaryEncoding::WriteText(*this, text); }
    CbStreamWriteBinaryBuffer& Write(char value) override { return writeNumber(value); }
    CbStreamWriteBinaryBuffer& Write(double value) override { return writeNumber(value); }
    CbStreamWriteBinaryBuffer& Write(float value) override { return writeNumber(value); }
    CbStreamWriteBinaryBuffer& Write(std::int64_t value) override { return writeNumber(value); }
    CbStreamWriteBinaryBuffer& Write(std::uint64_t value) override { return writeNumber(value); }
    CbStreamWriteBinaryBuffer& Write(int value) override { return writeNumber(value); }
    CbStreamWriteBinaryBuffer& Write(unsigned int value) override { return writeNumber(value); }
    CbStreamWriteBinaryBuffer& Write(short value) override { return writeNumber(value); }
    CbStreamWriteBinaryBuffer& Write(unsigned short value) override { return writeNumber(value); }
    CbStreamWriteBinaryBuffer& Write(signed char value) override { return writeNumber(value); }
    CbStreamWriteBinaryBuffer& Write(unsigned char value) override { return writeNumber(value); }
    CbStreamWriteBinaryBuffer& Write(bool value) override { return writeNumber(value); }
    CbStreamWriteBinaryBuffer& WriteVersion(unsigned int version) override { return writeNumber(version); }

    /// Appends `count` bytes. `data` may lie in this stream as long as that holds less than 2 GiB.
    CbStreamWriteBinaryBuffer& Write(const void* data, std::size_t count) override
    {
        if (count > bytes.GetCapacity() - bytes.GetSize()) [[unlikely]]
            appendGrowing(static_cast<const unsigned char*>(data), count);
        else
            bytes.Append(static_cast<const unsigned char*>(data), count);
        return *this;
    }

private:
    template <class T>
    CbStreamWriteBinaryBuffer& writeNumber(T value)
    {
        return BinaryEncoding::WriteNumber(*this, value);
    }

    // The rare case, kept out of the callers' code.
    void appendGrowing(const unsigned char* data, std::size_t count);
    void reserveGrowing(std::size_t count);

    CbArray<unsigned char> bytes;
};
