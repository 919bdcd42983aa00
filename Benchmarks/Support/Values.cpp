#include "Support/Values.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <stdexcept>

#include "Vellum/Base64.h"

namespace Measured
{

namespace
{

void PutTwoDigits(char* text, unsigned value)
{
    text[0] = static_cast<char>('0' + value / 10);
    text[1] = static_cast<char>('0' + value % 10);
}

std::uint16_t GetDigits(std::string_view text, std::size_t offset, std::size_t count)
{
    std::uint16_t value = 0;
    const char* const first = text.data() + offset;
    if (std::from_chars(first, first + count, value).ptr != first + count)
        throw std::runtime_error("a date has no digits where they should be");
    return value;
}

} // namespace

std::uint64_t PackDate(const CbDateTime& date)
{
    std::uint64_t packed = date.GetYear();
    packed = packed << 8 | date.GetMonth();
    packed = packed << 8 | date.GetDay();
    packed = packed << 8 | date.GetHour();
    packed = packed << 8 | date.GetMinute();
    return packed << 8 | date.GetSecond();
}

CbDateTime UnpackDate(std::uint64_t packed)
{
    const auto take = [&packed]
    {
        const auto field = static_cast<std::uint16_t>(packed & 0xFF);
        packed >>= 8;
        return field;
    };
    CbDateTime date = NoDate;
    date.SetSecond(take());
    date.SetMinute(take());
    date.SetHour(take());
    date.SetDay(take());
    date.SetMonth(take());
    date.SetYear(static_cast<std::uint16_t>(packed));
    return date;
}

DateText FormatDate(const CbDateTime& date)
{
    DateText text{"0000-00-00T00:00:00"};
    PutTwoDigits(&text[0], date.GetYear() / 100u);
    PutTwoDigits(&text[2], date.GetYear() % 100u);
    PutTwoDigits(&text[5], date.GetMonth());
    PutTwoDigits(&text[8], date.GetDay());
    PutTwoDigits(&text[11], date.GetHour());
    PutTwoDigits(&text[14], date.GetMinute());
    PutTwoDigits(&text[17], date.GetSecond());
    return text;
}

CbDateTime ParseDate(std::string_view text)
{
    if (text.size() != DateText().size() - 1)
        throw std::runtime_error("a date has another length than it should");
    CbDateTime date = NoDate;
    date.SetYear(GetDigits(text, 0, 4));
    date.SetMonth(GetDigits(text, 5, 2));
    date.SetDay(GetDigits(text, 8, 2));
    date.SetHour(GetDigits(text, 11, 2));
    date.SetMinute(GetDigits(text, 14, 2));
    date.SetSecond(GetDigits(text, 17, 2));
    return date;
}

std::string EncodeSignature(const Signature& signature)
{
    return Vellum::Base64::Encode(signature.data(), signature.size(), false);
}

void DecodeSignature(std::string_view text, Signature& signature)
{
    std::array<char, 45> terminated{};
    std::copy_n(text.data(), std::min(text.size(), terminated.size() - 1), terminated.data());
    Vellum::Base64::Decode(terminated.data(), signature.data(), signature.size());
}

void TakeFields(const FieldTable& table, SFields& fields)
{
    for (const std::uint32_t index : fields.lookups)
        fields.values[index] = table.at(SFields::GetKeys()[index]);
}

} // namespace Measured
