// The XML parser and its tree alone. An input is a text.

#include <cstdint>
#include <cstring>
#include <memory>

#include "Vellum/src/XmlParser.h"

#include "Support/Check.h"

namespace
{

using namespace Vellum;

// What holds for every node: all entries are there and stand in the order once, and children know their parent.
void CheckNode(const CXmlNode& node)
{
    const SXmlNodeData& data = *node.GetData();
    std::uint32_t counts[4] = {};
    const std::uint32_t total = data.childCount + data.attributeCount + data.textCount + data.clearCount;
    for (std::uint32_t i = 0; i < total; ++i)
        FUZZ_CHECK(counts[data.order[i] % 4]++ == data.order[i] / 4);
    FUZZ_CHECK(counts[XmlChildEntry] == data.childCount && counts[XmlAttributeEntry] == data.attributeCount);
    FUZZ_CHECK(counts[XmlTextEntry] == data.textCount && counts[XmlClearEntry] == data.clearCount);

    std::size_t bytes = 0; // reading them is what a sanitizer watches
    for (std::uint32_t i = 0; i < data.attributeCount; ++i)
        bytes += std::strlen(data.attributes[i].name);
    for (std::uint32_t i = 0; i < data.textCount; ++i)
        bytes += std::strlen(node.GetText(i));
    for (std::uint32_t i = 0; i < data.clearCount; ++i)
        bytes += std::strlen(node.GetClear(i).value);
    FUZZ_CHECK(bytes < SIZE_MAX);

    for (std::uint32_t i = 0; i < data.childCount; ++i)
    {
        const CXmlNode child = node.GetChild(i);
        FUZZ_CHECK(child.GetData()->parent == &data && child.GetName() != nullptr);
        FUZZ_CHECK(!node.GetChild(child.GetName()).IsEmpty());
        CheckNode(child);
    }
}

// Tokens follow one another within the text.
void CheckTokens(const char* text)
{
    SXmlParseContext context(text);
    const char* behind = text;
    for (SXmlToken token = NextXmlToken(context); token.kind != TokenEnd; token = NextXmlToken(context))
    {
        FUZZ_CHECK(token.length > 0 && token.start >= behind);
        behind = token.start + token.length;
        FUZZ_CHECK(behind <= text + context.position && text + context.position <= context.end);
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
