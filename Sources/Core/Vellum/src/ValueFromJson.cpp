#include <algorithm>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "Groundwork/CbDateTime.h"

#include "Vellum/CDocumentException.h"
#include "Vellum/CValue.h"

#include "Vellum/src/CJsonScanner.h"
#include "Vellum/src/JsonWords.h"
#include "Vellum/src/TextPosition.h"
#include "Vellum/src/UnescapeText.h"

namespace Vellum
{
namespace
{

// Of members with one key the last counts that isn't null, and it comes where it stands. The others go.
void DropRepeated(std::vector<CValue::SField>& members)
{
    std::vector<std::size_t> order(members.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {}, [&](std::size_t at) { return std::string_view(members[at].key.Get()); });
    std::vector<bool> isRepeated(members.size());
    bool hasRepeated = false;
    for (std::size_t place = 0; place + 1 < order.size(); ++place)
    {
        std::size_t& next = order[place + 1];
        if (members[order[place]].key != members[next].key)
            continue;
        hasRepeated = true;
        if (members[next].value.GetKind() == EValueKind::Null)
            std::swap(order[place], next); // goes, and what was there is compared with the one behind
        isRepeated[order[place]] = true;
    }
    if (!hasRepeated)
        return;
    std::vector<CValue::SField> left;
    for (std::size_t at = 0; at < members.size(); ++at)
        if (!isRepeated[at])
            left.push_back(std::move(members[at]));
    members = std::move(left);
}

CValue TakeWord(std::string_view word)
{
    if (word == "null")
        return {};
    if (word == "true" || word == "false")
        return word == "true";
    if (IsJsonNumber(word))
        return CValue::SNumber{std::string(word)};
    return UnescapeText(word);
}

CValue TakeValue(CJsonScanner& scanner, char terminator)
{
    CValue value;
    switch (scanner.Peek())
    {
    case '{':
        value = CValue::Object();
        scanner.ForEachMember(
            [&, &members = value.GetFields()](std::string_view key) {
                members.push_back({std::string(key), TakeValue(scanner, '}')});
            });
        DropRepeated(value.GetFields());
        return value;
    case '[':
        value = CValue::Sequence();
        scanner.ForEachElement([&, &elements = value.GetElements()](std::uint32_t)
                               { elements.push_back(TakeValue(scanner, ']')); });
        return value;
    case '"':
        return UnescapeText(scanner.TakeString());
    default:
        return TakeWord(scanner.TakeWord(terminator));
    }
}

} // namespace

CValue CValue::FromJson(const char* text)
{
    try
    {
        CJsonScanner scanner(text, false);
        if (!scanner.BeginDocument(EJsonRoot::Either))
            return *text == '\0' ? Sequence() : Object();
        return TakeValue(scanner, '\0');
    }
    catch (const SFault& fault)
    {
        const STextPosition position = GetTextPosition(text, static_cast<std::size_t>(fault.offset));
        throw CDocumentException(__FILE__, __LINE__, "Vellum::CValue::FromJson",
                                 {fault.reason, fault.path, {}, position.line, position.column, fault.offset});
    }
}

} // namespace Vellum
