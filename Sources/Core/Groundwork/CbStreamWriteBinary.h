#pragma once

#include <cstddef>

#include "Groundwork/CbStreamWrite.h"

/// CbStreamWriteBinary: the library's binary encoding of each type, built on one operation that takes raw bytes. A
/// stream of one's own derives from it and supplies that operation alone; documents may use it for any of their values.
/// Streams are append-only: no position, no seek.
///
///     number  := its bytes, least significant first; float and double as IEEE 754; char, signed char, unsigned char: 1
///     bool    := 00 | 01
///     text    := length:u32 byte*                        length in bytes, without the NUL
///     wide    := FF FE FF wideLength unit:u16*           length in UTF-16 units as they are written, without the NUL
///     wideLength := length:u8                            below 0xFF
///                 | FF length:u16                        below 0xFFFE
///                 | FF FF FF length:u32                  below 0xFFFFFFFF
///                 | FF FF FF FF FF FF FF length:u64
///     version := u32
///
/// - **Errors** CbExceptionStream, "CbStreamWriteBinary::Write", for a narrow text of 4 GiB and more. Otherwise what
///   the raw operation raises; what it has taken before stays written.
class VELLUM_API CbStreamWriteBinary : public CbStreamWrite
{
public:
    ~CbStreamWriteBinary() override;

    using IStreamWrite::Write;
    CbStreamWriteBinary& Write(const ATL::CStringT<wchar_t>& text) override;
    CbStreamWriteBinary& Write(const ATL::CStringT<char>& text) override;
    CbStreamWriteBinary& Write(const std::wstring& text) override;
    CbStreamWriteBinary& Write(const std::string& text) override;
    CbStreamWriteBinary& Write(const wchar_t* text) override;
    CbStreamWriteBinary& Write(const char* text) override;
#if LONG_MAX == INT_MAX
    CbStreamWriteBinary& Write(long value) override;
    CbStreamWriteBinary& Write(unsigned long value) override;
#endif
    CbStreamWriteBinary& Write(char value) override;
    CbStreamWriteBinary& Write(double value) override;
    CbStreamWriteBinary& Write(float value) override;
    CbStreamWriteBinary& Write(std::int64_t value) override;
    CbStreamWriteBinary& Write(std::uint64_t value) override;
    CbStreamWriteBinary& Write(int value) override;
    CbStreamWriteBinary& Write(unsigned int value) override;
    CbStreamWriteBinary& Write(short value) override;
    CbStreamWriteBinary& Write(unsigned short value) override;
    CbStreamWriteBinary& Write(signed char value) override;
    CbStreamWriteBinary& Write(unsigned char value) override;
    CbStreamWriteBinary& Write(bool value) override;
    CbStreamWriteBinary& WriteVersion(unsigned int version) override;

    /// Appends `count` bytes as they are and returns the stream. They are the caller's again when the call returns.
    /// With a count of 0 nothing is written and `data` may be null.
    virtual CbStreamWriteBinary& Write(const void* data, std::size_t count) = 0;

protected:
    CbStreamWriteBinary() = default;
    CbStreamWriteBinary(const CbStreamWriteBinary&) = default;
    CbStreamWriteBinary& operator=(const CbStreamWriteBinary&) = default;
};
