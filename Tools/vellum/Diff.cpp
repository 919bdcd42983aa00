#include <algorithm>
#include <cstdio>
#include <iostream>
#include <locale>
#include <memory>
#include <optional>
#include <sstream>
#include <Vellum/Vellum.h>

#include "Vellum/src/PathText.h"

#include "Commands.h"
#include "Input.h"
#include "Text.h"
#include "Values.h"

namespace
{

using Vellum::CValue;
using Vellum::EValueKind;

struct SDiffOptions
{
    std::string first;
    std::string second;
    bool isQuiet = false;
};

std::string UnderKey(std::string path, std::string_view key)
{
    Vellum::AppendKey(path, key);
    return path;
}

std::string UnderIndex(const std::string& path, std::size_t index) { return path + Vellum::ShowIndex(index); }

std::size_t GetSize(const CValue& value) { return value.GetFields().size() + value.GetElements().size(); }

// XML has nothing for what is empty but an empty text.
bool IsNothing(const CValue& value)
{
    return value.IsNested() ? GetSize(value) == 0 : value.GetKind() != EValueKind::Null && ToText(value).empty();
}

// A stream does it because std::from_chars knows no double in every standard library.
std::optional<double> ToNumber(const std::string& text)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    double number = 0;
    const bool isDecimal = text.find_first_not_of("+-.0123456789Ee") == std::string::npos;
    return isDecimal && stream >> number && stream.peek() == EOF ? std::optional(number) : std::nullopt;
}

std::string WithoutSpace(std::string text)
{
    std::erase_if(text, [](char byte) { return byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t'; });
    return text;
}

// A date of a text document has no milliseconds; a float is read back from nine digits.
bool AreAlikeScalars(const CValue& left, const CValue& right)
{
    if (left.GetKind() == right.GetKind() && left.GetKind() != EValueKind::Number)
        return left == right;
    std::string first = ToText(left), second = ToText(right);
    if (left.GetKind() == EValueKind::Date || right.GetKind() == EValueKind::Date)
        return first.size() >= 19 && second.size() >= 19 && first.substr(0, 10) == second.substr(0, 10) &&
               first.substr(11, 8) == second.substr(11, 8);
    if (left.GetKind() == EValueKind::Blob || right.GetKind() == EValueKind::Blob)
        return WithoutSpace(first) == WithoutSpace(second);
    if (first == second || (IsNothing(left) && IsNothing(right)))
        return true;
    const std::optional<double> one = ToNumber(first), other = ToNumber(second);
    if (!one || !other)
        return false;
    const bool isFloat = left.GetKind() == EValueKind::Float || right.GetKind() == EValueKind::Float;
    return isFloat ? static_cast<float>(*one) == static_cast<float>(*other) : *one == *other;
}

// CComparison: finds where two documents say something else, whatever their formats. What a format can't tell counts as
// equal: the order of fields, kinds where one document has texts, type names that one of them doesn't have, fields that
// are null.
class CComparison
{
public:
    explicit CComparison(bool isQuiet) : isQuiet(isQuiet) {}

    bool AreAlike(const CValue& left, const CValue& right)
    {
        compare({}, left, right);
        return count == 0;
    }

private:
    static constexpr std::size_t MostOfText = 60, MostOfPath = 200;

    void compare(const std::string& path, const CValue& left, const CValue& right);
    void compareTypes(const std::string& path, const CValue& left, const CValue& right);
    void compareFields(const std::string& path, const CValue& left, const CValue& right);
    void compareElements(const std::string& path, const CValue& left, const CValue& right);
    void compareWithObject(const std::string& path, const CValue& sequence, const CValue& object, bool isTurned);
    void tell(const std::string& path, const CValue* left, const CValue* right);
    void tellOne(const char* sign, const std::string& path, const CValue* value) const;
    void compareEither(const std::string& path, const CValue& left, const CValue& right, bool isTurned)
    {
        isTurned ? compare(path, right, left) : compare(path, left, right);
    }

    bool isQuiet;
    std::size_t count = 0; // of differences
};

void CComparison::compare(const std::string& path, const CValue& left, const CValue& right)
{
    if (isQuiet && count != 0)
        return;
    const bool isSequence = left.GetKind() == EValueKind::Sequence;
    if (IsNothing(left) && IsNothing(right))
        return;
    if (left.IsNested() && left.GetKind() == right.GetKind())
    {
        compareTypes(path, left, right);
        return isSequence ? compareElements(path, left, right) : compareFields(path, left, right);
    }
    if (left.IsNested() && right.IsNested())
        return isSequence ? compareWithObject(path, left, right, false) : compareWithObject(path, right, left, true);
    if (left.IsNested() || right.IsNested() || !AreAlikeScalars(left, right))
        tell(path, &left, &right);
}

void CComparison::compareTypes(const std::string& path, const CValue& left, const CValue& right)
{
    const auto isUnknown = [](const CValue& value)
    {
        const std::string& name = value.GetTypeName(); // the last two are what XML calls what has none
        return name.empty() || name == "object" || name == "sequence";
    };
    if (left.GetTypeName() == right.GetTypeName() || isUnknown(left) || isUnknown(right))
        return;
    ++count;
    if (!isQuiet)
        std::cout << "- " << ShowText(path, MostOfPath) << " is a " << ShowText(left.GetTypeName(), MostOfText)
                  << "\n+ " << ShowText(path, MostOfPath) << " is a " << ShowText(right.GetTypeName(), MostOfText)
                  << '\n';
}

// The fields of an object by key; several of one key keep their order.
std::vector<const CValue::SField*> SortFields(const CValue& object)
{
    std::vector<const CValue::SField*> sorted;
    for (const CValue::SField& field : object.GetFields())
        if (field.value.GetKind() != EValueKind::Null)
            sorted.push_back(&field);
    std::ranges::stable_sort(sorted, {},
                             [](const CValue::SField* field) { return std::string_view(field->key.Get()); });
    return sorted;
}

void CComparison::compareFields(const std::string& path, const CValue& left, const CValue& right)
{
    const auto leftFields = SortFields(left), rightFields = SortFields(right);
    auto first = leftFields.begin();
    auto second = rightFields.begin();
    while (first != leftFields.end() || second != rightFields.end())
        if (second == rightFields.end() || (first != leftFields.end() && (*first)->key < (*second)->key.Get()))
        {
            tell(UnderKey(path, (*first)->key.Get()), &(*first)->value, nullptr);
            ++first;
        }
        else if (first == leftFields.end() || (*second)->key < (*first)->key)
        {
            tell(UnderKey(path, (*second)->key.Get()), nullptr, &(*second)->value);
            ++second;
        }
        else
        {
            compare(UnderKey(path, (*first)->key.Get()), (*first)->value, (*second)->value);
            ++first;
            ++second;
        }
}

void CComparison::compareElements(const std::string& path, const CValue& left, const CValue& right)
{
    const std::vector<CValue>&leftElements = left.GetElements(), &rightElements = right.GetElements();
    for (std::size_t index = 0; index < std::max(leftElements.size(), rightElements.size()); ++index)
        if (index >= rightElements.size())
            tell(UnderIndex(path, index), &leftElements[index], nullptr);
        else if (index >= leftElements.size())
            tell(UnderIndex(path, index), nullptr, &rightElements[index]);
        else
            compare(UnderIndex(path, index), leftElements[index], rightElements[index]);
}

// XML shows a sequence of objects that are all of other types, such as that of a single one, as an object whose keys
// are the types.
void CComparison::compareWithObject(const std::string& path, const CValue& sequence, const CValue& object,
                                    bool isTurned)
{
    const std::vector<CValue>& elements = sequence.GetElements();
    const std::vector<CValue::SField>& fields = object.GetFields();
    const bool canBe = elements.size() == fields.size() && std::ranges::all_of(elements, &CValue::IsNested) &&
                       std::ranges::none_of(fields, [](const auto& field)
                                            { return GetSize(field.value) == 0 && !IsNothing(field.value); });
    if (!canBe)
        return isTurned ? tell(path, &object, &sequence) : tell(path, &sequence, &object);
    for (std::size_t index = 0; index < elements.size(); ++index)
        compareEither(UnderIndex(path, index), elements[index], fields[index].value, isTurned);
}

void CComparison::tell(const std::string& path, const CValue* left, const CValue* right)
{
    ++count;
    if (isQuiet)
        return;
    tellOne("- ", path, left);
    tellOne("+ ", path, right);
}

void CComparison::tellOne(const char* sign, const std::string& path, const CValue* value) const
{
    if (value == nullptr)
        return;
    std::cout << sign << ShowText(path, MostOfPath) << (path.empty() ? "" : ": ");
    if (value->GetKind() == EValueKind::Object)
        std::cout << "an object with " << Count(GetSize(*value), "field");
    else if (value->GetKind() == EValueKind::Sequence)
        std::cout << "a sequence of " << Count(GetSize(*value), "element");
    else if (value->GetKind() == EValueKind::Null)
        std::cout << "null";
    else if (IsInQuotes(*value))
        std::cout << Quote(ToText(*value), MostOfText);
    else
        std::cout << ShowText(ToText(*value), MostOfText);
    std::cout << '\n';
}

EStatus Diff(const SDiffOptions& options)
{
    const CValue left = LoadValue(options.first), right = LoadValue(options.second);
    return CComparison(options.isQuiet).AreAlike(left, right) ? EStatus::Done : EStatus::Differs;
}

} // namespace

SCommand MakeDiff()
{
    const auto options = std::make_shared<SDiffOptions>();
    return {
        .name = "diff",
        .summary = "Tells where the contents of two documents differ",
        .details =
            "The documents may be of different formats; what one of them can't tell counts as equal. A line that "
            "begins with - is of the first document, one with + of the second. The exit status is 1 if there is "
            "a difference.",
        .options =
            {
                {"", "FIRST", "A document, of any format", &options->first, true},
                {"", "SECOND", "Another one", &options->second, true},
                {"-q,--quiet", "", "Prints nothing: only the exit status tells", &options->isQuiet},
            },
        .run = [options] { return Diff(*options); },
    };
}
