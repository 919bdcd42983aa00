#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <Platform/Terminal.h>
#include <stdexcept>
#include <Vellum/CValue.h>

#include "Vellum/src/ByteText.h"
#include "Vellum/src/PathText.h"

#include "Commands.h"
#include "Input.h"
#include "Text.h"
#include "Values.h"

namespace
{

using Vellum::CValue;
using Vellum::EValueKind;

struct SShowOptions
{
    std::string file;
    std::string path;
    std::optional<std::uint32_t> depth;
    bool isWhole = false;
};

enum class EColour
{
    Key = 36,
    Text = 32,
    Kind = 90
};

// CTreePrinter: a line for each value, with what is inside an object or a sequence indented below it. Texts come as
// ShowText has them, so nothing in a document can do anything to a terminal.
class CTreePrinter
{
public:
    explicit CTreePrinter(const SShowOptions& options)
        : options(options),
          isColoured(Vellum::Platform::IsTerminal(Vellum::Platform::EOutput::Standard) &&
                     std::getenv("NO_COLOR") == nullptr)
    {
    }

    void Print(const CValue& root) { print({}, root); }

private:
    static constexpr std::size_t MostElements = 20, MostOfText = 60, MostOfKey = 60, MostOfBlob = 16;

    std::string paint(EColour colour, const std::string& text) const
    {
        return isColoured && !text.empty() ? "\033[" + std::to_string(static_cast<int>(colour)) + 'm' + text + "\033[0m"
                                           : text;
    }
    std::string showScalar(const CValue& value) const;
    std::string showBlob(const CValue::Bytes& bytes) const;
    static std::string describe(const CValue& nested);
    void print(const std::string& name, const CValue& value);
    void printInside(const CValue& value);

    std::string indent() const { return std::string(std::size_t{2} * level, ' '); }
    std::size_t most(std::size_t number) const { return options.isWhole ? std::string::npos : number; }

    const SShowOptions& options;
    bool isColoured;
    std::uint32_t level = 0;
};

std::string CTreePrinter::showBlob(const CValue::Bytes& bytes) const
{
    const std::size_t shown = std::min(bytes.size(), most(MostOfBlob));
    std::string text = Count(bytes.size(), "byte") + (shown == 0 ? "" : ":");
    for (std::size_t at = 0; at < shown; ++at)
        text += ' ' + Vellum::ShowByte(bytes[at]);
    return text + (shown < bytes.size() ? " ..." : "");
}

// What is in quotes is a text if nothing else is said.
std::string CTreePrinter::showScalar(const CValue& value) const
{
    const EValueKind kind = value.GetKind();
    const std::string told = paint(EColour::Kind, std::string("  ") + GetName(kind));
    if (kind == EValueKind::Null)
        return paint(EColour::Kind, "null");
    if (kind == EValueKind::Blob)
        return showBlob(*value.Get<CValue::Bytes>()) + told;
    const std::string text = ToText(value);
    if (IsInQuotes(value))
        return paint(EColour::Text, Quote(text, most(MostOfText))) + (kind == EValueKind::Text ? "" : told);
    return ShowText(text, most(MostOfText)) + (kind == EValueKind::Bool || kind == EValueKind::Number ? "" : told);
}

// `shop::Order, 3 fields`, `2 elements of uint16`.
std::string CTreePrinter::describe(const CValue& nested)
{
    const std::string type = ShowText(nested.GetTypeName(), MostOfKey);
    if (nested.GetKind() == EValueKind::Object)
        return (type.empty() ? "" : type + ", ") + Count(nested.GetFields().size(), "field");
    const std::vector<CValue>& elements = nested.GetElements();
    const bool isUniform =
        !elements.empty() &&
        std::ranges::all_of(elements, [&](const CValue& each) { return each.GetKind() == elements[0].GetKind(); });
    return (type.empty() ? "" : type + ", ") + Count(elements.size(), "element") +
           (isUniform ? std::string(" of ") + GetName(elements[0].GetKind()) : "");
}

void CTreePrinter::print(const std::string& name, const CValue& value)
{
    std::cout << indent() << name << (name.empty() ? "" : ": ");
    if (!value.IsNested())
    {
        std::cout << showScalar(value) << '\n';
        return;
    }
    std::cout << paint(EColour::Kind, describe(value)) << '\n';
    if (!options.depth || level < *options.depth)
    {
        ++level;
        printInside(value);
        --level;
    }
}

void CTreePrinter::printInside(const CValue& value)
{
    for (const auto& [key, field] : value.GetFields())
        print(paint(EColour::Key, ShowText(key.Get(), most(MostOfKey))), field);
    const std::vector<CValue>& elements = value.GetElements();
    const std::size_t shown = std::min(elements.size(), most(MostElements));
    for (std::size_t index = 0; index < shown; ++index)
        print(paint(EColour::Key, Vellum::ShowIndex(index)), elements[index]);
    if (shown < elements.size())
        std::cout << indent() << "... " << Count(elements.size() - shown, "more element") << '\n';
}

EStatus Show(const SShowOptions& options)
{
    const CValue document = LoadValue(options.file);
    const CValue* const value = document.Find(options.path);
    if (value == nullptr)
        throw std::runtime_error(GetShownName(options.file) + " has no " + options.path + '.');
    CTreePrinter(options).Print(*value);
    return EStatus::Done;
}

} // namespace

SCommand MakeShow()
{
    const auto options = std::make_shared<SShowOptions>();
    return {
        .name = "show",
        .summary = "Shows the content of a document as a tree",
        .details =
            "Each value is a line, with its kind where that isn't plain. Long values and sequences are cut. On a "
            "terminal the tree is coloured, unless NO_COLOR is set in the environment.",
        .options =
            {
                {"", "FILE", "The document, of any format", &options->file, true},
                {"", "PATH", "Shows only the value with that path, as in lines[3].price", &options->path},
                {"-d,--depth", "NUMBER", "Shows no more levels of objects and sequences than that", &options->depth},
                {"-a,--all", "", "Shows long values and sequences as a whole", &options->isWhole},
            },
        .run = [options] { return Show(*options); },
    };
}
