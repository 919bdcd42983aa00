#pragma once

#include <utility>

#include "Groundwork/BinaryDecoding.h"
#include "Groundwork/CbStreamReadBinary.h"

/// CbStreamReadBinaryBuffer: reads from memory that the client keeps, for as long as it is read. A copy goes on from
/// the same place on its own.
///
/// The class is final and its operations are inline, so that a call on an object of this class is no virtual call.
class VELLUM_API CbStreamReadBinaryBuffer final : public CbStreamReadBinary
{
public:
    /// Reads `size` bytes at `data`, which may be null when `size` is 0. They must stay valid and unchanged.
    CbStreamReadBinaryBuffer(const void* data, std::size_t size) noexcept
        : next(static_cast<const unsigned char*>(data)), left(size)
    {
    }

    CbStreamReadBinaryBuffer(const CbStreamReadBinaryBuffer&) = default;
    CbStreamReadBinaryBuffer& operator=(const CbStreamReadBinaryBuffer&) = default;
    ~CbStreamReadBinaryBuffer() override;

    /// How many bytes have not been read yet.
    std::size_t GetLeft() const noexcept { return left; }

    /// Takes `size` bytes and returns where they lie, among the bytes that the constructor was given and for as long as
    /// those are there; or raises CbExceptionStream, "CbStreamReadBinary::Read".
    const unsigned char* ReadInPlace(std::size_t size)
    {
        ExpectLeft(size);
        left -= size;
        return std::exchange(next, next + size);
    }

    /// Raises CbExceptionStream, "CbStreamReadBinary::Read", if there are fewer bytes left, and takes none.
    void ExpectLeft(std::uint64_t size) const
    {
        if (size > left) [[unlikely]]
            BinaryDecoding::RaiseMissing();
    }

    using CbStreamReadBinary::Read;
    CbStreamReadBinaryBuffer& Read(ATL::CStringT<wchar_t>& text) override { return readText(text); }
    CbStreamReadBinaryBuffer& Read(ATL::CStringT<char>& text) override { return readText(text); }
    CbStreamReadBinaryBuffer& Read(std::wstring& text) override { return readText(text); }
    CbStreamReadBinaryBuffer& Read(std::string& text) override { return readText(text); }
    CbStreamReadBinaryBuffer& Read(char& value) override { return readNumber(value); }
    CbStreamReadBinaryBuffer& Read(double& value) override { return readNumber(value); }
    CbStreamReadBinaryBuffer& Read(float& value) override { return readNumber(value); }
    CbStreamReadBinaryBuffer& Read(std::int64_t& value) override { return readNumber(value); }
    CbStreamReadBinaryBuffer& Read(std::uint64_t& value) override { return readNumber(value); }
    CbStreamReadBinaryBuffer& Read(int& value) override { return readNumber(value); }
    CbStreamReadBinaryBuffer& Read(unsigned int& value) override { return readNumber(value); }
    CbStreamReadBinaryBuffer& Read(short& value) override { return readNumber(value); }
    CbStreamReadBinaryBuffer& Read(unsigned short& value) override { return readNumber(value); }
    CbStreamReadBinaryBuffer& Read(signed char& value) override { return readNumber(value); }
    CbStreamReadBinaryBuffer& Read(unsigned char& value) override { return readNumber(value); }
    CbStreamReadBinaryBuffer& Read(bool& value) override { return readNumber(value); }

    /// Copies `count` bytes, or as many as there are left, and returns their number. `data` may be null when `count` is
    /// 0.
    std::uint64_t Read(void* data, std::size_t count) override
    {
        const std::size_t delivered = std::min(count, left);
        if (delivered != 0)
            std::memcpy(data, next, delivered);
        next += delivered;
        left -= delivered;
        return delivered;
    }

    /// The base's, without a virtual call: fills `size` bytes or raises CbExceptionStream, "CbStreamReadBinary::Read".
    void ReadExact(void* data, std::size_t size)
    {
        ExpectLeft(size);
        Read(data, size);
    }

private:
    template <class Text>
    CbStreamReadBinaryBuffer& readText(Text& text)
    {
        return BinaryDecoding::ReadText(*this, text);
    }
    template <class T>
    CbStreamReadBinaryBuffer& readNumber(T& value)
    {
        return BinaryDecoding::ReadNumber(*this, value);
    }

    const unsigned char* next;
    std::size_t left;
};
