// The XML parser and its tree alone. An input is a text.

#include <cstdint>
#include <cstring>
#include <memory>

#include "Vellum/src/XmlParser.h"

#include "Support/Check.h"

namespace
{

using namespace Vellum;

// What holds for every node: its entries stand in the order once, and each can be had.
void CheckNode(const CXmlNode& node)
{
    std::uint32_t counts[4] = {};
    std::size_t bytes = 0; // reading them is what a sanitizer watches
    for (std::uint32_t place = 0; place < node.GetEntryCount(); ++place)
    {
        const auto [kind, index] = node.GetEntry(place);
        FUZZ_CHECK(counts[kind]++ == index);
        if (kind == XmlAttributeEntry)
            bytes += std::strlen(node.GetAttribute(index).name);
        else if (kind == XmlTextEntry)
            bytes += std::strlen(node.GetText(index));
        else if (kind == XmlClearEntry)
            bytes += std::strlen(node.GetClear(index).value);
        else
        {
            const CXmlNode child = node.GetChild(index);
            FUZZ_CHECK(child.HasParent() && !node.GetChild(child.GetName()).IsEmpty());
            CheckNode(child);
        }
    }
    FUZZ_CHECK(bytes < SIZE_MAX && counts[XmlChildEntry] == node.GetChildCount());
    FUZZ_CHECK(counts[XmlTextEntry] == node.GetTextCount() && counts[XmlClearEntry] == node.GetClearCount());
}

// Tokens follow one another within the text.
void CheckTokens(const char* text)
{
    CXmlMemory memory;
    SXmlParseContext context(text, memory);
    const char* behind = text;
    for (SXmlToken token = NextXmlToken(context); token.kind != TokenEnd; token = NextXmlToken(context))
    {
        FUZZ_CHECK(token.length > 0 && token.start >= behind);
        behind = token.start + token.length;
        FUZZ_CHECK(behind <= context.at && context.at <= context.end);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // A block of exactly the text's size, so that the sanitizer sees one byte too far.
    const auto text = std::make_unique<char[]>(size + 1);
    if (size != 0)
        std::memcpy(text.get(), data, size);

    CheckTokens(text.get());
    SXmlParseOutcome outcome{};
    const CXmlNode tree = ParseXmlText(text.get(), &outcome);
    FUZZ_CHECK(tree.IsEmpty() == (outcome.error > XmlElementNotClosed));
    FUZZ_CHECK(outcome.position >= 0 && static_cast<std::size_t>(outcome.position) <= size);
    FUZZ_CHECK(*GetXmlErrorName(outcome.error) != 0);
    if (!tree.IsEmpty())
        CheckNode(tree);
    return 0;
}
