#include "Values.h"

#include <array>
#include <charconv>
#include <concepts>
#include <Vellum/Vellum.h>

#include "Input.h"
#include "Text.h"

namespace
{

using Vellum::CValue;
using Vellum::EValueKind;

constexpr std::size_t MaxPath = 200; // as much of one as helps

// The shortest digits that bring the number back.
template <class Number>
std::string ShowNumber(Number number)
{
    std::array<char, 400> digits{};
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

std::string ShowDate(const CbDateTime& date)
{
    return date.ToString(date.GetMilliseconds() == 0 ? "Y-m-dTH:i:s" : "Y-m-dTH:i:s.v").GetString();
}

} // namespace

std::string ShowPlace(std::uint32_t line, std::uint32_t column, std::uint64_t offset, std::string_view path)
{
    std::string place = line != 0 ? "line " + std::to_string(line) + ", column " + std::to_string(column)
                                  : "byte " + std::to_string(offset);
    return path.empty() ? place : place + ", " + ShowText(path, MaxPath);
}

CValue ParseValue(std::string_view document, const std::string& name)
{
    try
    {
        switch (Recognize(document))
        {
        case Vellum::EFormat::Binary:
        {
            CbStreamReadBinaryBuffer stream(document.data(), document.size());
            return CValue::FromBinary(stream);
        }
        case Vellum::EFormat::Json:
            return CValue::FromJson(std::string(document));
        case Vellum::EFormat::Xml:
            return CValue::FromXml(std::string(document));
        default:
            throw CDamagedDocument(GetShownName(name) + " begins like no document.");
        }
    }
    catch (const Vellum::CDocumentException& exception)
    {
        const Vellum::SDocumentFailure& failure = exception.GetFailure();
        throw CDamagedDocument(GetShownName(name) + ", " +
                               ShowPlace(failure.line, failure.column, failure.offset, failure.path) + ": " +
                               ShowText(failure.reason, std::string::npos));
    }
}

CValue LoadValue(const std::string& name) { return ParseValue(ReadInput(name), name); }

std::string ToText(const CValue& value)
{
    switch (value.GetKind())
    {
    case EValueKind::Bool:
        return *value.Get<bool>() ? "true" : "false";
    case EValueKind::Char:
        return std::string(1, *value.Get<char>());
    case EValueKind::UInt8:
        return ShowNumber(*value.Get<unsigned char>());
    case EValueKind::Int8:
        return ShowNumber(*value.Get<signed char>());
    case EValueKind::UInt16:
        return ShowNumber(*value.Get<std::uint16_t>());
    case EValueKind::Int16:
        return ShowNumber(*value.Get<std::int16_t>());
    case EValueKind::UInt32:
        return ShowNumber(*value.Get<std::uint32_t>());
    case EValueKind::Int32:
        return ShowNumber(*value.Get<std::int32_t>());
    case EValueKind::UInt64:
        return ShowNumber(*value.Get<std::uint64_t>());
    case EValueKind::Int64:
        return ShowNumber(*value.Get<std::int64_t>());
    case EValueKind::Float:
        return ShowNumber(*value.Get<float>());
    case EValueKind::Double:
        return ShowNumber(*value.Get<double>());
    case EValueKind::Text:
        return *value.Get<std::string>();
    case EValueKind::WideText:
        return Vellum::Encodings::ToUTF8(*value.Get<std::wstring>());
    case EValueKind::Date:
        return ShowDate(*value.Get<CbDateTime>());
    case EValueKind::Blob:
        return Vellum::Base64::Encode(value.Get<CValue::Bytes>()->data(), value.Get<CValue::Bytes>()->size(), false);
    case EValueKind::Number:
        return value.Get<CValue::SNumber>()->text;
    default:
        return {};
    }
}

bool IsInQuotes(const CValue& value)
{
    const EValueKind kind = value.GetKind();
    return kind == EValueKind::Text || kind == EValueKind::WideText || kind == EValueKind::Char;
}
