#pragma once

#include <cstdint>
#include <string>

#include "../Platform/CStringT.h"
#include "../Platform/Export.h"

#include "Groundwork/NaturalArguments.h"

/// CbStreamRead: where stored values come in, the counterpart of IStreamWrite. Each operation takes the bytes that the
/// Write of the same type has made, replaces its argument by the value and returns the stream.
///
/// - **Text** Wide text is UTF-16, one code unit in each element, whatever the width of wchar_t.
/// - **Errors** What the derived class raises when there is no such value; the argument then holds any value of its
///   type.
/// - **Threads** A stream belongs to one thread at a time.
class VELLUM_API CbStreamRead
{
public:
    virtual ~CbStreamRead();

    /// @name Read
    /// Take one value from the stream, of the type of the argument.
    /// @{
    virtual CbStreamRead& Read(ATL::CStringT<wchar_t>& text) = 0;
    virtual CbStreamRead& Read(ATL::CStringT<char>& text) = 0;
    virtual CbStreamRead& Read(std::wstring& text) = 0;
    virtual CbStreamRead& Read(std::string& text) = 0;
    virtual CbStreamRead& Read(char& value) = 0;
    virtual CbStreamRead& Read(double& value) = 0;
    virtual CbStreamRead& Read(float& value) = 0;
    virtual CbStreamRead& Read(std::int64_t& value) = 0;
    virtual CbStreamRead& Read(std::uint64_t& value) = 0;
    virtual CbStreamRead& Read(int& value) = 0;
    virtual CbStreamRead& Read(unsigned int& value) = 0;
    virtual CbStreamRead& Read(short& value) = 0;
    virtual CbStreamRead& Read(unsigned short& value) = 0;
    virtual CbStreamRead& Read(signed char& value) = 0;
    virtual CbStreamRead& Read(unsigned char& value) = 0;
    virtual CbStreamRead& Read(bool& value) = 0;
    /// @}

    /// An integer type that isn't among these is read as the one of its width and sign.
    template <Vellum::OtherInteger Integer>
    CbStreamRead& Read(Integer& value)
    {
        Vellum::ExactInteger<Integer> exact{};
        Read(exact);
        value = static_cast<Integer>(exact);
        return *this;
    }

    /// Takes a version from the stream. One above `version` is of a later make than the caller knows: raises
    /// CbExceptionWrongFileVersion, "CbStreamRead::ReadAndCompareVersion".
    void ReadAndCompareVersion(unsigned int version);

protected:
    CbStreamRead() = default;
    CbStreamRead(const CbStreamRead&) = default;
    CbStreamRead& operator=(const CbStreamRead&) = default;
};
