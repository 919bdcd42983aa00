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

bool CTextOutput::printsPlainIntegers() const
{
    const auto base = stream.flags() & std::ios_base::basefield;
    return (base == std::ios_base::dec || base == std::ios_base::fmtflags{}) &&
           (stream.flags() & std::ios_base::showpos) == 0 && stream.width() == 0;
}

void CTextOutput::putLong(std::string_view text)
{
    Flush();
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void CTextOutput::PutTabs(std::uint32_t count)
{
    static constexpr std::string_view Tabs = "\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t";
    for (; count > Tabs.size(); count -= static_cast<std::uint32_t>(Tabs.size()))
        Put(Tabs);
    Put(Tabs.substr(0, count));
}

void CTextOutput::PutReal(double value, int precision)
{
    constexpr auto Formats = std::ios_base::floatfield | std::ios_base::uppercase | std::ios_base::showpos;
    stream.precision(precision);
    if ((stream.flags() & Formats) != 0 || stream.width() != 0)
        return insert(value);
    reserve(MostNumber);
    const bool showPoint = (stream.flags() & std::ios_base::showpoint) != 0;
    used = static_cast<std::size_t>(FormatReal(next(), value, precision, showPoint) - pending.data());
}

void CTextOutput::PutBool(bool value)
{
    stream.setf(std::ios_base::boolalpha);
    if (stream.width() != 0)
        return insert(value);
    Put(value ? std::string_view("true") : std::string_view("false"));
}

void CTextOutput::Flush()
{
    const auto size = static_cast<std::streamsize>(used);
    used = 0; // before the stream gets a chance to raise something
    if (size != 0)
        stream.write(pending.data(), size);
}

} // namespace Vellum
