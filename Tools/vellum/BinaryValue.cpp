#include "BinaryValue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <Vellum/Vellum.h>

#include "Vellum/src/CBinaryWalker.h"
#include "Vellum/src/ValueKinds.h"

#include "Text.h"

namespace
{

std::string ShowNumber(bool value) { return value ? "true" : "false"; }
std::string ShowNumber(char value) { return '\'' + ShowText(std::string_view(&value, 1), 1) + '\''; }

template <class T>
std::string ShowNumber(T value)
{
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

template <class T>
std::string Show(std::string_view bytes, std::size_t)
{
    T value{};
    CbStreamReadBinaryBuffer(bytes.data(), bytes.size()).Read(value);
    return ShowNumber(value);
}

std::string ShowNarrowText(std::string_view bytes, std::size_t most) { return Quote(bytes.substr(4), most); }

std::string ShowWideText(std::string_view bytes, std::size_t most)
{
    const std::array<std::size_t, 3> heads{4, 6, 10}; // the mark, and its length in one of four forms
    const auto has = [&](std::size_t at, std::string_view ones) { return bytes.substr(at, ones.size()) == ones; };
    const std::size_t head = !has(3, "\xFF")               ? heads[0]
                             : !has(4, "\xFF\xFF")         ? heads[1]
                             : !has(6, "\xFF\xFF\xFF\xFF") ? heads[2]
                                                           : 18;
    std::wstring text;
    for (std::size_t at = head; at + 1 < bytes.size() && text.size() <= 2 * most; at += 2)
        text += static_cast<wchar_t>(static_cast<unsigned char>(bytes[at]) | static_cast<unsigned char>(bytes[at + 1])
                                                                                 << 8);
    return Quote(Vellum::Encodings::ToUTF8(text), most);
}

std::string ShowDate(std::string_view bytes, std::size_t)
{
    std::uint64_t ticks = 0;
    CbStreamReadBinaryBuffer(bytes.data() + 4, bytes.size() - 4).Read(ticks);
    const CbDateTime date(ticks);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d.%03d", date.GetYear(), date.GetMonth(),
                  date.GetDay(), date.GetHour(), date.GetMinute(), date.GetSecond(), date.GetMilliseconds());
    return text.data();
}

std::string ShowBlob(std::string_view bytes, std::size_t) { return Count(bytes.size() - 4, "byte"); }

std::string ShowNothing(std::string_view, std::size_t) { return {}; }

constexpr std::size_t MostOfPath = 300; // code points

// By tag.
constexpr std::array<std::string (*)(std::string_view bytes, std::size_t most), Vellum::ValueKinds::Count> Shows{
    Show<bool>,  Show<char>,         Show<unsigned char>, Show<signed char>,   Show<unsigned short>,
    Show<short>, Show<unsigned int>, Show<int>,           Show<std::uint64_t>, Show<std::int64_t>,
    Show<float>, Show<double>,       ShowNarrowText,      ShowWideText,        ShowDate,
    ShowBlob,    ShowNothing,        ShowNothing,
};
static_assert(Shows.back() != nullptr, "a kind isn't told here");

} // namespace

std::string ShowValue(std::uint8_t tag, std::string_view bytes, std::size_t most) { return Shows.at(tag)(bytes, most); }

std::size_t GetWidth(std::uint8_t tag) { return Vellum::NumberWidths.at(tag); }

std::string ShowDamage(const Vellum::SBinaryDamage& damage)
{
    const std::string path = ShowText(damage.path, MostOfPath);
    return "Damaged at " + std::to_string(damage.offset) + (path.empty() ? "" : ", in " + path) + ": " + damage.reason;
}
