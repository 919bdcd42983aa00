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

TEST(CXmlNode, KeepsItsEntriesAndTheirOrder)
{
    for (const unsigned count : {1u, 2u, 3u, 64u, 65u})
    {
        CXmlNode node = CXmlNode::MakeDocument();
        for (unsigned i = 0; i < count; ++i)
        {
            node.AddText(Text(node, "t" + std::to_string(i)));
            AddChild(node, "c" + std::to_string(i)).AddText("inner");
            node.AddAttribute(Text(node, "a" + std::to_string(i)), i % 2 == 0 ? "v" : nullptr);
            node.AddClear(Text(node, "s" + std::to_string(i)), "<!--", "-->");
        }
        ASSERT_EQ(node.GetEntryCount(), count * 4);
        for (unsigned i = 0; i < count; ++i)
        {
            EXPECT_EQ(node.GetText(i), "t" + std::to_string(i));
            EXPECT_EQ(node.GetChild(i).GetName(), "c" + std::to_string(i));
            EXPECT_EQ(node.GetClear(i).value, "s" + std::to_string(i));
            EXPECT_EQ(node.GetAttribute(i).name, "a" + std::to_string(i));
            EXPECT_EQ(node.GetAttribute(i).value != nullptr, i % 2 == 0);
            const Vellum::EXmlEntry kinds[] = {Vellum::XmlTextEntry, Vellum::XmlChildEntry, Vellum::XmlAttributeEntry,
                                               Vellum::XmlClearEntry};
            for (unsigned kind = 0; kind < 4; ++kind)
                EXPECT_EQ(node.GetEntry(i * 4 + kind), std::pair(kinds[kind], i));
        }
        for (const unsigned past : {count, 0xFFFFFFFFu})
            EXPECT_TRUE(node.GetChild(past).IsEmpty() && node.GetText(past) == nullptr &&
                        node.GetClear(past).value == nullptr);
    }
}

// Names that differ only in case, and the same name again and again, with few children and with enough for an index.
TEST(CXmlNode, FindsTheFirstChildOfANameWithoutRegardToCase)
{
    for (const unsigned count : {1u, 16u, 17u, 2000u})
    {
        CXmlNode node = CXmlNode::MakeDocument();
        for (unsigned i = 0; i < count; ++i)
            for (const char* prefix : {"KEY", "key", "same"})
                AddChild(node, prefix + (*prefix == 's' ? "" : std::to_string(i)));
        for (unsigned i = 0; i < count; ++i)
            EXPECT_EQ(node.GetChild(("Key" + std::to_string(i)).c_str()).GetName(), "KEY" + std::to_string(i));
        EXPECT_EQ(node.GetChild("SAME").GetName(), node.GetChild(2u).GetName());
        AddChild(node, "liquid"); // of the same hash as the first of these
        for (const char* absent : {"costarring", "", "ke", "key", "key00", "other"})
            EXPECT_TRUE(node.GetChild(absent).IsEmpty()) << absent;
        for (const char* added : {"zinke", "altarage", "COSTARRING"})
            AddChild(node, added);
        for (const char* added : {"zinke", "altarage", "costarring", "liquid"})
            EXPECT_EQ(std::tolower(*node.GetChild(added).GetName()), *added);
        AddChild(node, "late"); // an index made before doesn't hide it
        EXPECT_STREQ(node.GetChild("LATE").GetName(), "late");
    }
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

TEST(CXmlNode, WhatCouldNotBeAllocatedIsNotAdded)
{
    CXmlNode node = CXmlNode::MakeDocument();
    EXPECT_TRUE(node.AddChild(nullptr, false).IsEmpty());
    node.AddAttribute(nullptr, "value");
    node.AddText(nullptr);
    node.AddClear(nullptr, "<!--", "-->");
    EXPECT_EQ(node.GetEntryCount(), 0u);

    const auto build = []
    {
        CXmlNode failing;
        GetsThrough(
            [&]
            {
                failing = CXmlNode::MakeDocument();
                for (unsigned i = 0; i < 2000; ++i)
                    AddChild(failing, "c").AddText("t");
            });
        for (std::uint32_t i = 0; i < failing.GetChildCount(); ++i)
            EXPECT_STREQ(failing.GetChild(i).GetName(), "c");
    };
    EXPECT_GT(FailEachAllocation(build), 6u);
}

} // namespace
