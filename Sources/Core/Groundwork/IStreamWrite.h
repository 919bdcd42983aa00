#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>

#include "../Platform/CStringT.h"
#include "../Platform/Export.h"

#include "Groundwork/NaturalArguments.h"

/// IStreamWrite: where stored values go out, one operation for each type. Every operation returns the stream, so that
/// calls can be chained. The encoding is that of the derived class; CbStreamWriteBinary has the library's.
///
/// - **Text** A text ends at its first NUL, whichever operation takes it; pointers to text must not be null. Wide text
///   is UTF-16, one code unit in each element, whatever the width of wchar_t. Where that is wider, an element above
///   0xFFFF is taken as that code point and leaves as its surrogate pair, one beyond U+10FFFF as U+FFFD.
/// - **Errors** What the derived class raises when it can't take a value.
/// - **Threads** A stream belongs to one thread at a time.
class VELLUM_API IStreamWrite
{
public:
    virtual ~IStreamWrite();

    /// @name Write
    /// Write one value, of the type of the argument.
    /// @{
    virtual IStreamWrite& Write(const ATL::CStringT<wchar_t>& text) = 0;
    virtual IStreamWrite& Write(const ATL::CStringT<char>& text) = 0;
    virtual IStreamWrite& Write(const std::wstring& text) = 0;
    virtual IStreamWrite& Write(const std::string& text) = 0;
    virtual IStreamWrite& Write(const wchar_t* text) = 0;
    virtual IStreamWrite& Write(const char* text) = 0;
#if LONG_MAX == INT_MAX // elsewhere `long` is one of the types below
    virtual IStreamWrite& Write(long value) = 0;
    virtual IStreamWrite& Write(unsigned long value) = 0;
#endif
    virtual IStreamWrite& Write(char value) = 0;
    virtual IStreamWrite& Write(double value) = 0;
    virtual IStreamWrite& Write(float value) = 0;
    virtual IStreamWrite& Write(std::int64_t value) = 0;
    virtual IStreamWrite& Write(std::uint64_t value) = 0;
    virtual IStreamWrite& Write(int value) = 0;
    virtual IStreamWrite& Write(unsigned int value) = 0;
    virtual IStreamWrite& Write(short value) = 0;
    virtual IStreamWrite& Write(unsigned short value) = 0;
    virtual IStreamWrite& Write(signed char value) = 0;
    virtual IStreamWrite& Write(unsigned char value) = 0;
    virtual IStreamWrite& Write(bool value) = 0;
    /// @}

    /// Writes the version at the head of a document, for ReadAndCompareVersion of the reading stream.
    virtual IStreamWrite& WriteVersion(unsigned int version) = 0;

    /// An integer type that isn't among these is written as the one of its width and sign.
    template <Vellum::OtherInteger Integer>
    IStreamWrite& Write(Integer value)
    {
        return Write(static_cast<Vellum::ExactInteger<Integer>>(value));
    }

    /// @name Write
    /// What would silently become a bool or a number: other pointers, lambdas, characters other than char,
    /// enumerations.
    /// @{
    template <Vellum::Misfit T>
    IStreamWrite& Write(T value) = delete;
    IStreamWrite& Write(std::nullptr_t) = delete;
    /// @}

protected:
    IStreamWrite() = default;
    IStreamWrite(const IStreamWrite&) = default;
    IStreamWrite& operator=(const IStreamWrite&) = default;
};
