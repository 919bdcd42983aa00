#include "Vellum/src/CTextOutput.h"

#include <locale>

#include "Vellum/src/RealText.h"

namespace Vellum
{
namespace
{

// Puts the classic locale into a stream and gives it its own back. Only for the length of one number: the client may
// imbue its stream as it likes while it writes.
class CClassicLocale
{
public:
    explicit CClassicLocale(std::ostream& stream) : stream(stream), own(stream.getloc())
    {
        if (own != std::locale::classic())
            stream.imbue(std::locale::classic());
    }
    ~CClassicLocale()
    {
        if (own != std::locale::classic())
            stream.imbue(own);
    }
    CClassicLocale(const CClassicLocale&) = delete;
    CClassicLocale& operator=(const CClassicLocale&) = delete;

private:
    std::ostream& stream;
    std::locale own;
};

} // namespace

template <class T>
void CTextOutput::insert(T value)
{
    Flush();
    const CClassicLocale classic(stream);
    stream << value;
}

template void CTextOutput::insert(short);
template void CTextOutput::insert(unsigned short);
template void CTextOutput::insert(int);
template void CTextOutput::insert(unsigned);
template void CTextOutput::insert(long);
template void CTextOutput::insert(unsigned long);
template void CTextOutput::insert(long long);
template void CTextOutput::insert(unsigned long long);

void CTextOutput::putAlone(char character)
{
    makeRoom(1);
    *next++ = character;
}

void CTextOutput::putAlone(std::string_view text)
{
    if (char* const to = Reserve(text.size()))
        return Commit(append(to, text));
    Flush();
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void CTextOutput::putAlone(STabs tabs)
{
    for (; tabs.count > Tabs.size(); tabs.count -= static_cast<std::uint32_t>(Tabs.size()))
        putAlone(Tabs);
    putAlone(Tabs.substr(0, tabs.count));
}

void CTextOutput::PutReal(double value, int precision)
{
    constexpr auto Formats = std::ios_base::floatfield | std::ios_base::uppercase | std::ios_base::showpos;
    state.precision(precision);
    if ((state.flags() & Formats) != 0 || state.width() != 0)
        return insert(value);
    makeRoom(MostNumber);
    next = FormatReal(next, value, precision, (state.flags() & std::ios_base::showpoint) != 0);
}

void CTextOutput::PutBool(bool value)
{
    state.setf(std::ios_base::boolalpha);
    if (state.width() != 0)
        return insert(value);
    Put(value ? std::string_view("true") : std::string_view("false"));
}

} // namespace Vellum
