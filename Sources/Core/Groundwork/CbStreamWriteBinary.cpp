#include "Groundwork/CbStreamWriteBinary.h"

#include "Groundwork/BinaryEncoding.h"
#include "Groundwork/CbExceptions.h"

void BinaryEncoding::RaiseTextTooLong() { throw CbExceptionStream(__FILE__, __LINE__, "CbStreamWriteBinary::Write"); }

using BinaryEncoding::WriteNumber;
using BinaryEncoding::WriteText;

IStreamWrite::~IStreamWrite() = default;
CbStreamWrite::~CbStreamWrite() = default;
CbStreamWriteBinary::~CbStreamWriteBinary() = default;

CbStreamWriteBinary& CbStreamWriteBinary::Write(const ATL::CStringT<wchar_t>& text) { return Write(text.c_str()); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(const ATL::CStringT<char>& text) { return Write(text.c_str()); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(const std::wstring& text) { return Write(text.c_str()); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(const std::string& text) { return Write(text.c_str()); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(const wchar_t* text) { return WriteText(*this, text); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(const char* text) { return WriteText(*this, text); }
#if LONG_MAX == INT_MAX
CbStreamWriteBinary& CbStreamWriteBinary::Write(long value) { return WriteNumber(*this, value); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(unsigned long value) { return WriteNumber(*this, value); }
#endif
CbStreamWriteBinary& CbStreamWriteBinary::Write(char value) { return WriteNumber(*this, value); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(double value) { return WriteNumber(*this, value); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(float value) { return WriteNumber(*this, value); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(std::int64_t value) { return WriteNumber(*this, value); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(std::uint64_t value) { return WriteNumber(*this, value); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(int value) { return WriteNumber(*this, value); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(unsigned int value) { return WriteNumber(*this, value); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(short value) { return WriteNumber(*this, value); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(unsigned short value) { return WriteNumber(*this, value); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(signed char value) { return WriteNumber(*this, value); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(unsigned char value) { return WriteNumber(*this, value); }
CbStreamWriteBinary& CbStreamWriteBinary::Write(bool value) { return WriteNumber(*this, value); }
CbStreamWriteBinary& CbStreamWriteBinary::WriteVersion(unsigned int version) { return Write(version); }
