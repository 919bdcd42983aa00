#include "Vellum/src/CXmlNode.h"

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

TEST(CXmlNode, ADeepTreeIsLetGoWithoutDeepRecursion)
{
    CXmlNode top = CXmlNode::MakeDocument();
    const CXmlNode kept = AddChild(top, "kept");
    CXmlNode node = top;
    for (unsigned depth = 0; depth < 1'000'000; ++depth)
        node = node.AddChild("a", false);
    node = top = CXmlNode();
    EXPECT_FALSE(kept.HasParent());
}

} // namespace
