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

bool IsJsonNumber(std::string_view word)
{
    TakeByte(word, "-");
    if (word == "inf" || word == "nan")
        return true;
    const bool isOctal = word.size() > 1 && word[0] == '0' && IsDigit(word[1]);
    if (isOctal || !TakeDigits(word))
        return false;
    if (TakeByte(word, "."))
        TakeDigits(word);
    if (TakeByte(word, "eE"))
    {
        TakeByte(word, "+-");
        return TakeDigits(word) && word.empty();
    }
    return word.empty();
}

} // namespace Vellum
