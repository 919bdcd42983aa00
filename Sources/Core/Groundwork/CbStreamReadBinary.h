#pragma once

#include <cstddef>

#include "Groundwork/CbArray.h"
#include "Groundwork/CbStreamRead.h"

/// CbStreamReadBinary: reads the encoding of CbStreamWriteBinary, built on one operation that delivers raw bytes. A
/// stream of one's own derives from it and supplies that operation alone; documents may use it for any of their values.
///
/// - **Memory** A length that is read is never trusted: texts and byte arrays grow with the bytes that really arrive,
///   from 64 KiB on by doubling at most. Smaller ones are obtained at once and read with one raw Read.
/// - **Errors** CbExceptionStream, "CbStreamReadBinary::Read", when the bytes run out, and for a wide text without its
///   mark. How many bytes have been consumed then is left open.
class VELLUM_API CbStreamReadBinary : public CbStreamRead
{
public:
    ~CbStreamReadBinary() override;

    using CbStreamRead::Read;

    /// @name Read
    /// Take one value from the stream, of the type of the argument. A bool is one byte, and any byte but 0 is true.
    /// @{
    CbStreamReadBinary& Read(ATL::CStringT<wchar_t>& text) override;
    CbStreamReadBinary& Read(ATL::CStringT<char>& text) override;
    CbStreamReadBinary& Read(std::wstring& text) override;
    CbStreamReadBinary& Read(std::string& text) override;
    CbStreamReadBinary& Read(char& value) override;
    CbStreamReadBinary& Read(double& value) override;
    CbStreamReadBinary& Read(float& value) override;
    CbStreamReadBinary& Read(std::int64_t& value) override;
    CbStreamReadBinary& Read(std::uint64_t& value) override;
    CbStreamReadBinary& Read(int& value) override;
    CbStreamReadBinary& Read(unsigned int& value) override;
    CbStreamReadBinary& Read(short& value) override;
    CbStreamReadBinary& Read(unsigned short& value) override;
    CbStreamReadBinary& Read(signed char& value) override;
    CbStreamReadBinary& Read(unsigned char& value) override;
    CbStreamReadBinary& Read(bool& value) override;
    /// @}

    /// Fills `count` bytes and returns how many were delivered: fewer than `count` only where the stream ends. `data`
    /// may be null when `count` is 0. What it raises passes through all other operations.
    virtual std::uint64_t Read(void* data, std::size_t count) = 0;

    /// Fills `size` bytes or raises CbExceptionStream, "CbStreamReadBinary::Read".
    void ReadExact(void* data, std::size_t size);

    /// Replaces the array's content by the next `count` bytes, or by as many as there are, and returns their number.
    /// The capacity is exact unless the array had more before. A count of 0 is passed on to the raw Read as well.
    std::uint32_t ReadBytes(CbArray<unsigned char>& bytes, std::uint32_t count);

protected:
    CbStreamReadBinary() = default;
    CbStreamReadBinary(const CbStreamReadBinary&) = default;
    CbStreamReadBinary& operator=(const CbStreamReadBinary&) = default;
};
