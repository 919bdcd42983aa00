#include "Model/Values.h"

#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <list>
#include <map>
#include <sstream>

#include "Support/GermanLocales.h"

namespace Model
{

std::vector<std::string> Words(const std::string& text)
{
    std::vector<std::string> words;
    std::istringstream stream(text);
    for (std::string word; std::getline(stream, word, '~');)
        words.push_back(word);
    return words;
}

std::vector<std::size_t> TableOrder(const std::vector<std::uint64_t>& hashes)
{
    std::uint64_t size = 128;
    std::map<std::uint64_t, std::list<std::size_t>> buckets;
    const auto inOrder = [&]
    {
        std::vector<std::size_t> order;
        for (const auto& [number, bucket] : buckets)
            order.insert(order.end(), bucket.begin(), bucket.end());
        return order;
    };
    for (std::size_t count = 0; count < hashes.size();)
    {
        buckets[hashes[count] % size].push_front(count);
        if (++count * 4 < size * 3)
            continue;
        const std::vector<std::size_t> order = inOrder();
        buckets.clear();
        size *= 2;
        for (const std::size_t place : order)
            buckets[hashes[place] % size].push_front(place);
    }
    return inOrder();
}

std::uint64_t HashOfBytes(std::string_view bytes)
{
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char byte : bytes)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    return hash;
}

std::uint64_t HashOfName(std::string_view name)
{
    std::uint64_t hash = 0;
    for (const char byte : name)
        hash = hash * 33 + static_cast<std::uint64_t>(static_cast<signed char>(byte));
    return hash;
}

std::string UpToNul(const std::string& text) { return text.c_str(); }

void AppendCodePoint(std::string& utf8, std::uint32_t codePoint)
{
    const auto tail = [&](int shift) { utf8 += static_cast<char>(0x80 | (codePoint >> shift & 0x3F)); };
    if (codePoint < 0x80)
        utf8 += static_cast<char>(codePoint);
    else if (codePoint < 0x800)
        (utf8 += static_cast<char>(0xC0 | codePoint >> 6), tail(0));
    else if (codePoint < 0x10000)
        (utf8 += static_cast<char>(0xE0 | codePoint >> 12), tail(6), tail(0));
    else
        (utf8 += static_cast<char>(0xF0 | codePoint >> 18), tail(12), tail(6), tail(0));
}

namespace
{

template <class Text>
void AppendUnits(Text& text, std::uint32_t codePoint)
{
    using Unit = typename Text::value_type;
    if (codePoint > 0x10FFFF)
        codePoint = 0xFFFD;
    if (codePoint > 0xFFFF)
        text.push_back(static_cast<Unit>(0xD7C0 + (codePoint >> 10)));
    text.push_back(static_cast<Unit>(codePoint > 0xFFFF ? 0xDC00 + (codePoint & 0x3FF) : codePoint));
}

} // namespace

std::vector<std::uint16_t> ToUnits(const std::wstring& text)
{
    std::vector<std::uint16_t> units;
    for (const wchar_t element : text)
    {
        if (element == 0)
            break;
        AppendUnits(units, static_cast<std::uint32_t>(element));
    }
    return units;
}

std::string ToUtf8(const std::wstring& text)
{
    std::string utf8;
    const std::wstring ended(text.c_str());
    for (std::size_t i = 0; i < ended.size(); ++i)
    {
        std::uint32_t codePoint = static_cast<std::uint32_t>(ended[i]);
        const std::uint32_t next = i + 1 < ended.size() ? static_cast<std::uint32_t>(ended[i + 1]) : 0;
        if (codePoint >> 10 == 0xD800 >> 10 && next >> 10 == 0xDC00 >> 10)
            (codePoint = 0x10000 + ((codePoint & 0x3FF) << 10 | (next & 0x3FF)), ++i);
        else if (codePoint >> 11 == 0xD800 >> 11 || codePoint > 0x10FFFF)
            codePoint = 0xFFFD;
        AppendCodePoint(utf8, codePoint);
    }
    return utf8;
}

std::wstring FromUtf8(const std::string& text)
{
    struct SLead
    {
        unsigned first, last, low, high, tails; // lead bytes, the range of the byte behind them, how many bytes follow
    };
    static constexpr SLead leads[] = {
        {0x00, 0x7F, 0, 0, 0},       {0xC2, 0xDF, 0x80, 0xBF, 1}, {0xE0, 0xE0, 0xA0, 0xBF, 2},
        {0xE1, 0xEC, 0x80, 0xBF, 2}, {0xED, 0xED, 0x80, 0x9F, 2}, {0xEE, 0xEF, 0x80, 0xBF, 2},
        {0xF0, 0xF0, 0x90, 0xBF, 3}, {0xF1, 0xF3, 0x80, 0xBF, 3}, {0xF4, 0xF4, 0x80, 0x8F, 3}};
    std::wstring wide;
    const std::string ended = UpToNul(text);
    for (std::size_t i = 0; i < ended.size();)
    {
        const unsigned byte = static_cast<unsigned char>(ended[i++]);
        const SLead* found = nullptr;
        for (const SLead& lead : leads)
            if (byte >= lead.first && byte <= lead.last)
                found = &lead;
        std::uint32_t codePoint = 0xFFFD;
        if (found != nullptr)
        {
            unsigned tails = found->tails, low = found->low, high = found->high;
            codePoint = tails == 0 ? byte : byte & (0x3Fu >> tails);
            for (; tails > 0; --tails, low = 0x80, high = 0xBF)
            {
                const unsigned tail = i < ended.size() ? static_cast<unsigned char>(ended[i]) : 0;
                if (tail < low || tail > high)
                    break;
                codePoint = codePoint << 6 | (tail & 0x3F);
                ++i;
            }
            if (tails > 0)
                codePoint = 0xFFFD;
        }
        AppendUnits(wide, codePoint);
    }
    return wide;
}

namespace
{

using namespace std::chrono;
constexpr sys_days FirstDay = sys_days(year(1601) / 1 / 1);

} // namespace

std::uint64_t ToTicks(const SDate& date)
{
    const auto& [y, mo, d, h, mi, s, ms] = date.fields;
    const year_month_day ymd = year(y) / mo / d;
    if (y < 1601 || y > 30827 || !ymd.ok() || h > 23 || mi > 59 || s > 59 || ms > 999)
        return 0;
    const milliseconds since = sys_days(ymd) - FirstDay + hours(h) + minutes(mi) + seconds(s) + milliseconds(ms);
    return static_cast<std::uint64_t>(since.count()) * 10000;
}

SDate FromTicks(std::uint64_t ticks)
{
    const milliseconds since(ticks >> 63 != 0 ? 0 : ticks / 10000);
    const days whole = floor<days>(since);
    const year_month_day ymd(FirstDay + whole);
    const auto field = [](auto value) { return static_cast<unsigned short>(value); };
    const auto rest = (since - whole).count();
    return {{field(int(ymd.year())), field(unsigned(ymd.month())), field(unsigned(ymd.day())), field(rest / 3600000),
             field(rest / 60000 % 60), field(rest / 1000 % 60), field(rest % 1000)}};
}

std::string ToText(const SDate& date)
{
    const auto& [year, month, day, hour, minute, second, milliseconds] = date.fields;
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", year, month, day, hour, minute, second);
    return text;
}

SDate ToDate(const std::string& text, const char* function)
{
    const std::string ended = UpToNul(text);
    SDate date;
    date.fields[6] = 0;
    unsigned long long f[6]; // "%hu" goes through a long, of 64 bits or of 32
    if (ended.size() >= 19 && ended[4] == '-' && ended[7] == '-' && ended[13] == ':' && ended[16] == ':' &&
        (ended[10] == ' ' || ended[10] == 'T') &&
        std::sscanf(ended.c_str(), ended[10] == ' ' ? "%llu-%llu-%llu %llu:%llu:%llu" : "%llu-%llu-%lluT%llu:%llu:%llu",
                    &f[0], &f[1], &f[2], &f[3], &f[4], &f[5]) == 6)
    {
        std::transform(f, f + 6, date.fields.begin(), [](auto field) { return static_cast<unsigned short>(field); });
        return date;
    }
    throw SRaised{ConversionException, function};
}

namespace
{

const std::string Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

} // namespace

std::string ToBase64(const std::string& bytes, bool hasLines)
{
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3)
    {
        const std::size_t count = std::min<std::size_t>(bytes.size() - i, 3);
        unsigned group = 0;
        for (std::size_t j = 0; j < 3; ++j)
            group = group << 8 | (j < count ? static_cast<unsigned char>(bytes[i + j]) : 0u);
        for (std::size_t j = 0; j < 4; ++j)
            text += j <= count ? Alphabet[group >> (18 - 6 * j) & 63] : '=';
        if (hasLines && count == 3 && i / 3 % 18 == 17)
            text += '\n';
    }
    return text;
}

std::string FromBase64(const std::string& text)
{
    std::string ended = UpToNul(text);
    ended = ended.substr(0, ended.find_first_not_of(Alphabet + "= \t\n\r"));
    std::size_t fills = 0, count = 0;
    for (const char c : ended)
        count += Alphabet.find(c) != std::string::npos || c == '=' ? 1 : 0;
    while (fills < ended.size() && ended[ended.size() - 1 - fills] == '=')
        ++fills;
    const std::size_t size = (count - fills) * 3 / 4;
    if (size == 0)
        throw SRaised{Exception, "Vellum::Base64::Decode"};
    std::string bytes;
    unsigned bits = 0, bitCount = 0;
    for (const char c : ended.substr(0, ended.find('=')))
    {
        const std::size_t value = Alphabet.find(c);
        if (value == std::string::npos)
            continue;
        bits = bits << 6 | static_cast<unsigned>(value);
        if ((bitCount += 6) >= 8)
            bytes += static_cast<char>(bits >> (bitCount -= 8) & 0xFF);
    }
    bytes.resize(size); // behind a fill in the middle nothing is decoded
    return bytes;
}

std::string ToText(double value, int digits, bool showPoint)
{
    const Support::CCThread point;
    if (std::isnan(value)) // whose sign not all C libraries print
        return std::signbit(value) ? "-nan" : "nan";
    char text[64];
    std::snprintf(text, sizeof text, showPoint ? "%#.*g" : "%.*g", digits, value);
    return text;
}

std::int64_t ToInteger(const std::string& text)
{
    char* end = nullptr;
    errno = 0;
    const std::uint64_t value = std::strtoull(text.c_str(), &end, 0);
    if (end == text.c_str())
    {
        const std::size_t first = text.find_first_not_of(" \t\n\v\f\r");
        if (first != std::string::npos &&
            text.substr(first + (text[first] == '+' || text[first] == '-')).starts_with('0'))
            return 0; // "0x" with no digits behind it, which not all C libraries take
        throw SRaised{Exception, "Vellum::Conversion::StringToInt"};
    }
    if (errno == 0)
        return static_cast<std::int64_t>(value);
    using Limits = std::numeric_limits<std::int64_t>;
    return text[text.find_first_of("+-0123456789")] == '-' ? Limits::min() : Limits::max();
}

double ToDouble(const std::string& text)
{
    const Support::CCThread point;
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (end != text.c_str() + text.size())
        throw SRaised{Exception, "Vellum::Conversion::StringToDouble"};
    return value;
}

namespace
{

struct SEncode
{
    template <class Number>
    std::string operator()(const Number& number) const
    {
        return Raw(number);
    }
    std::string operator()(const std::string& text) const { return Counted(UpToNul(text)); }
    std::string operator()(const SDate& date) const { return Size(0) + Raw(ToTicks(date)); }
    std::string operator()(const SBlob& blob) const { return Counted(blob.bytes); }
    std::string operator()(const Part&) const { return {}; }
    std::string operator()(const std::wstring& text) const
    {
        const std::vector<std::uint16_t> units = ToUnits(text);
        const auto size = static_cast<std::uint32_t>(units.size());
        const std::string longest = std::string("\xFF\xFF\xFF") + Raw(size);
        std::string bytes = size < 0xFF     ? longest.substr(3, 1)
                            : size < 0xFFFE ? "\xFF" + longest.substr(3, 2)
                                            : longest;
        for (const std::uint16_t unit : units)
            bytes += Raw(unit);
        return "\xFF\xFE\xFF" + bytes;
    }
};

} // namespace

std::string Encoded(const Value& value) { return std::visit(SEncode(), value); }

} // namespace Model
