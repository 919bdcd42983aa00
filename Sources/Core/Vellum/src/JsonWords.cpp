#include "Vellum/src/JsonWords.h"

#include <algorithm>

namespace Vellum
{
namespace
{

constexpr bool IsDigit(char byte) { return byte >= '0' && byte <= '9'; }

// Takes digits from the front. False if there are none.
bool TakeDigits(std::string_view& text)
{
    const auto end = std::ranges::find_if_not(text, IsDigit);
    const auto count = static_cast<std::size_t>(end - text.begin());
    text.remove_prefix(count);
    return count != 0;
}

bool TakeByte(std::string_view& text, std::string_view bytes)
{
    if (text.empty() || bytes.find(text.front()) == std::string_view::npos)
        return false;
    text.remove_prefix(1);
    return true;
}

} // namespace

bool IsDecimal(std::string_view text)
{
    TakeByte(text, "-");
    if (!TakeDigits(text) || (TakeByte(text, ".") && (TakeDigits(text), false)))
        return false;
    if (TakeByte(text, "eE"))
    {
        TakeByte(text, "+-");
        return TakeDigits(text) && text.empty();
    }
    return text.empty();
}

bool IsSpecialReal(std::string_view text)
{
    TakeByte(text, "-");
    return text == "nan" || text == "inf";
}

bool IsJsonNumber(std::string_view word)
{
    const std::string_view digits = word.substr(word.starts_with('-') ? 1 : 0);
    const bool isOctal = digits.size() > 1 && digits[0] == '0' && IsDigit(digits[1]);
    return IsSpecialReal(word) || (!isOctal && IsDecimal(word));
}

} // namespace Vellum
