#include <charconv>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>
#include <system_error>

#include "Platform/TextCompare.h"

#include "Groundwork/CbDateTime.h"
#include "Groundwork/IException.h"

#include "Vellum/Conversion.h"

#include "Vellum/src/JsonWords.h"

#include "Describe/Bytes.h"
#include "Describe/StrictElements.h"
#include "Describe/StrictKeys.h"
#include "Describe/StrictValues.h"

namespace Vellum::Describing
{
namespace
{

// Digits without zeros in front of them, which would make an octal number of them elsewhere.
bool IsInteger(std::string_view text)
{
    text.remove_prefix(text.starts_with('-') ? 1 : 0);
    const bool isPlain = !text.starts_with('0') || text.size() == 1;
    return isPlain && !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

template <class T>
T ReadExactInteger(const std::string& text, T lowest, T highest, const SPlace& place)
{
    if (!IsInteger(text))
        RaiseAt(place, "\"" + text + "\" is no whole number.");
    T value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < lowest || value > highest)
        RaiseAt(place, "The number " + text + " isn't between " + std::to_string(lowest) + " and " +
                           std::to_string(highest) + ".");
    return value;
}

} // namespace

std::int64_t ReadExactSigned(const std::string& text, std::int64_t lowest, std::int64_t highest, const SPlace& place)
{
    return ReadExactInteger(text, lowest, highest, place);
}

std::uint64_t ReadExactUnsigned(const std::string& text, std::uint64_t highest, const SPlace& place)
{
    return ReadExactInteger(text, std::uint64_t{0}, highest, place);
}

double ReadExactReal(const std::string& text, double tooLarge, const SPlace& place)
{
    const bool isSpecial = IsSpecialReal(text);
    if (!isSpecial && !IsDecimal(text))
        RaiseAt(place, "\"" + text + "\" is no number.");
    const double value = Conversion::StringToDouble(text);
    if (!isSpecial && std::abs(value) >= tooLarge)
        RaiseAt(place, "The number " + text + " is too large.");
    return value;
}

bool ReadExactBool(const std::string& text, const SPlace& place)
{
    if (text != "true" && text != "false")
        RaiseAt(place, "\"" + text + "\" is neither true nor false.");
    return text == "true";
}

void CheckCharacter(const std::string& text, const SPlace& place)
{
    if (text.size() > 1)
        RaiseAt(place, "\"" + text + "\" is more than one character.");
}

void CheckDate(const IDateTime& date, const SPlace& place)
{
    const CbDateTime first(std::uint64_t{0}); // 1601-01-01, whose count of ticks is 0 as that of no date at all
    const bool isFirst = date.GetYear() == first.GetYear() && date.GetMonth() == 1 && date.GetDay() == 1 &&
                         date.GetHour() == 0 && date.GetMinute() == 0 && date.GetSecond() == 0 &&
                         date.GetMilliseconds() == 0;
    if (!isFirst && CbDateTime(date).ToFileTime() == 0)
        RaiseAt(place, "The date is none of the calendar's.");
}

void CheckBase64(const std::string& text, const SPlace& place)
{
    constexpr std::string_view Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::size_t digits = 0;
    std::size_t fills = 0;
    for (const char byte : text)
    {
        if (std::string_view(" \t\r\n").find(byte) != std::string_view::npos)
            continue;
        if (byte == '=')
            ++fills;
        else if (fills != 0 || Alphabet.find(byte) == std::string_view::npos)
            return RaiseAt(place, "The text is no Base64.");
        else
            ++digits;
    }
    if (digits % 4 == 1 || (digits + fills) % 4 != 0)
        RaiseAt(place, "The Base64 text isn't complete.");
}

bool AreEqualKeys(const SPlace& place, const char* first, const char* second)
{
    if (place.document->format == EFormat::Xml)
        return Platform::CompareWithoutCase(first, second) == 0;
    return std::string_view(first) == second;
}

void CheckAbsence(const IDataReader& reader, const char* key, const SPlace& place)
{
    for (std::uint32_t index = 0; index < reader.GetKeyCount(); ++index)
        if (AreEqualKeys(place, reader.GetKey(index), key))
            RaiseAt(SPlace{place.document, &place, key}, "The value is of another kind than the field.");
}

namespace
{

// Something of the contract that reads nothing.
class CPassedObject final : public ISerializable
{
public:
    const char* GetTypeName() const override { return ""; }
    void Write(IDataWriter&) const override {}
    void Read(IDataReader&) override {}
};

class CPassedSequence final : public ISerializableContainer
{
public:
    const char* GetTypeName() const override { return ""; }
    void Write(IContainerWriter&) const override {}
    void Read(IContainerReader&) override {}
};

template <class... T, class Reader, class Key>
bool HasOneOf(const Reader& reader, Key key)
{
    return [&](auto... values) { return (reader.Read(key, values) || ...); }(T()...);
}

// Whether there is something of any kind but blob.
template <class Reader, class Key>
bool HasValue(const Reader& reader, Key key)
{
    CPassedObject object;
    CPassedSequence sequence;
    CbDateTime date(std::uint64_t{0});
    return reader.Read(key, object) || reader.Read(key, sequence) || reader.Read(key, date) ||
           HasOneOf<std::string, std::wstring, bool, char, double, float, std::int64_t, std::uint64_t, std::int32_t,
                    std::uint32_t, std::int16_t, std::uint16_t, signed char, unsigned char>(reader, key);
}

// Whether there is an element. What refuses to be read is there.
bool HasElement(IContainerReader& reader, std::uint32_t index)
try
{
    return HasValue(reader, index) || reader.GetBlob(index).first != nullptr;
}
catch (const IException&)
{
    return true;
}

} // namespace

bool IsBlobAlone(const IDataReader& reader, const char* key)
{
    for (std::uint32_t index = 0; index < reader.GetKeyCount(); ++index)
        if (std::strcmp(reader.GetKey(index), key) == 0)
            return !HasValue(reader, key);
    return false;
}

void CheckEnd(IContainerReader& reader, std::uint32_t index, const SPlace& place)
{
    if (HasElement(reader, index))
        RaiseAt(SPlace{place.document, &place, nullptr, index},
                "The element is of another kind than what is read here.");
}

void CheckCount(IContainerReader& reader, std::uint32_t found, std::uint32_t wanted, const SPlace& place)
{
    if (found < wanted)
    {
        CheckEnd(reader, found, place);
        RaiseAt(place, "There are " + std::to_string(found) + " elements in place of " + std::to_string(wanted) + ".");
    }
    if (HasElement(reader, wanted))
        RaiseAt(place, "There are more than " + std::to_string(wanted) + " elements.");
}

} // namespace Vellum::Describing
