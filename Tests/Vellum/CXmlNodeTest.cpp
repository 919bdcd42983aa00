#include "Vellum/src/CXmlNode.h"

#include <map>

#include "Platform/TextCompare.h"

#include "Support/Testing.h"

namespace
{

using Vellum::CXmlNode;

// A text in the memory of the node's tree.
const char* Text(const CXmlNode& node, const std::string& text)
{
    char* const copy = node.GetMemory().AllocateText(text.size());
    if (copy != nullptr)
        text.copy(copy, text.size());
    return copy;
}

CXmlNode AddChild(CXmlNode node, const std::string& name) { return node.AddChild(Text(node, name), false); }

std::string Lower(std::string name)
{
    std::ranges::transform(name, name.begin(), Vellum::Platform::FoldCase);
    return name;
}

TEST(CXmlNode, APartOutlivesTheTop)
{
    CXmlNode top = CXmlNode::MakeDocument();
    CXmlNode part = AddChild(top, "part");
    AddChild(part, "below").AddText("text");
    AddChild(top, "beside");
    const CXmlNode copy = part;
    EXPECT_TRUE(part.HasParent());
    top = CXmlNode();
    EXPECT_FALSE(part.HasParent());
    part = part.GetChild("below"); // drops one handle of two
    EXPECT_STREQ(part.GetText(0), "text");
    EXPECT_TRUE(part.HasParent());
    const CXmlNode& self = part;
    part = self;
    EXPECT_STREQ(part.GetName(), "below");
}

TEST(CXmlNode, ADeepTreeIsLetGoWithItsLastHandleAndWithoutDeepRecursion)
{
    CXmlNode top = CXmlNode::MakeDocument();
    CXmlNode kept = AddChild(top, "kept");
    CXmlNode node = top;
    for (unsigned depth = 0; depth < 1'000'000; ++depth)
        node = node.AddChild("a", false);
    node = top = CXmlNode();
    EXPECT_FALSE(kept.HasParent());
    const CAllocationCounter counter;
    kept = CXmlNode();
    EXPECT_GT(counter.GetFreed(), 1'000'000u);
}

// Names of up to three letters, each twice. "[" and "{" count as one letter in hashes, "a" and "A" everywhere.
TEST(CXmlNode, FindsTheFirstChildOfANameWithoutRegardToCase)
{
    std::vector<std::string> names{""};
    for (std::size_t i = 0; names[i].size() < 3; ++i)
        for (const char letter : {'[', '{', 'a', 'A'})
            names.push_back(names[i] + letter);
    CXmlNode node = CXmlNode::MakeDocument();
    std::map<std::string, std::uint32_t> first;
    const Vellum::CXmlElement& element = node;
    for (std::uint32_t i = 0; i < 2 * (names.size() - 1); ++i)
    {
        AddChild(node, names[1 + i * 47 % (names.size() - 1)]); // an index made before doesn't hide it
        first.try_emplace(Lower(node.GetChild(i).GetName()), i);
        Vellum::CXmlElement last;
        for (const std::string& name : names)
        {
            const auto found = first.find(Lower(name));
            const char* const expected = found == first.end() ? nullptr : node.GetChild(found->second).GetName();
            EXPECT_EQ(element.GetChild(name.c_str(), last).GetName(), expected) << name;
        }
    }
}

} // namespace
