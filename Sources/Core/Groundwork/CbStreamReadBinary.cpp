#include "Groundwork/CbStreamReadBinary.h"

#include "Groundwork/BinaryDecoding.h"
#include "Groundwork/CbExceptions.h"

void BinaryDecoding::RaiseMissing() { throw CbExceptionStream(__FILE__, __LINE__, "CbStreamReadBinary::Read"); }

using BinaryDecoding::ReadNumber;
using BinaryDecoding::ReadText;

CbStreamReadBinary::~CbStreamReadBinary() = default;

CbStreamReadBinary& CbStreamReadBinary::Read(ATL::CStringT<wchar_t>& text)
{
    return Read(static_cast<std::wstring&>(text));
}
CbStreamReadBinary& CbStreamReadBinary::Read(ATL::CStringT<char>& text)
{
    return Read(static_cast<std::string&>(text));
}
CbStreamReadBinary& CbStreamReadBinary::Read(std::wstring& text) { return ReadText(*this, text); }
CbStreamReadBinary& CbStreamReadBinary::Read(std::string& text) { return ReadText(*this, text); }
CbStreamReadBinary& CbStreamReadBinary::Read(char& value) { return ReadNumber(*this, value); }
CbStreamReadBinary& CbStreamReadBinary::Read(double& value) { return ReadNumber(*this, value); }
CbStreamReadBinary& CbStreamReadBinary::Read(float& value) { return ReadNumber(*this, value); }
CbStreamReadBinary& CbStreamReadBinary::Read(std::int64_t& value) { return ReadNumber(*this, value); }
CbStreamReadBinary& CbStreamReadBinary::Read(std::uint64_t& value) { return ReadNumber(*this, value); }
CbStreamReadBinary& CbStreamReadBinary::Read(int& value) { return ReadNumber(*this, value); }
CbStreamReadBinary& CbStreamReadBinary::Read(unsigned int& value) { return ReadNumber(*this, value); }
CbStreamReadBinary& CbStreamReadBinary::Read(short& value) { return ReadNumber(*this, value); }
CbStreamReadBinary& CbStreamReadBinary::Read(unsigned short& value) { return ReadNumber(*this, value); }
CbStreamReadBinary& CbStreamReadBinary::Read(signed char& value) { return ReadNumber(*this, value); }
CbStreamReadBinary& CbStreamReadBinary::Read(unsigned char& value) { return ReadNumber(*this, value); }
CbStreamReadBinary& CbStreamReadBinary::Read(bool& value) { return ReadNumber(*this, value); }

void CbStreamReadBinary::ReadExact(void* data, std::size_t size)
{
    if (Read(data, size) != size)
        BinaryDecoding::RaiseMissing();
}

std::uint32_t CbStreamReadBinary::ReadBytes(CbArray<unsigned char>& bytes, std::uint32_t count)
{
    return static_cast<std::uint32_t>(BinaryDecoding::ReadGrowing(*this, bytes, count));
}
