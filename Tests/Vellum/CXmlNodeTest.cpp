#include "Vellum/src/CXmlNode.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Support/FailEachAllocation.h"

namespace
{

using Vellum::CXmlNode;

Vellum::XmlText Text(const std::string& text)
{
    Vellum::XmlText copy(new char[text.size() + 1]);
    text.copy(copy.get(), text.size());
    copy[text.size()] = 0;
    return copy;
}

CXmlNode Top() { return CXmlNode(nullptr, Text("top"), false); }

TEST(CXmlNode, TheEmptyNodeHasNothing)
{
    const CXmlNode empty;
    EXPECT_TRUE(empty.IsEmpty());
    EXPECT_EQ(empty.GetName(), nullptr);
    EXPECT_EQ(empty.GetChildCount() + empty.GetTextCount() + empty.GetClearCount(), 0u);
    EXPECT_TRUE(empty.GetChild(0u).IsEmpty() && empty.GetChild("a").IsEmpty());
    EXPECT_EQ(empty.GetText(0), nullptr);
    const Vellum::SXmlClear clear = empty.GetClear(0);
    EXPECT_TRUE(clear.value == nullptr && clear.openTag == nullptr && clear.closeTag == nullptr);
}

TEST(CXmlNode, KeepsItsEntriesAndTheirOrder)
{
    for (const unsigned count : {1u, 2u, 3u, 49u, 50u, 51u, 64u, 65u, 149u, 150u, 151u})
    {
        CXmlNode node = Top();
        for (unsigned i = 0; i < count; ++i)
        {
            node.AddText(Text("t" + std::to_string(i)));
            node.AddChild(Text("c" + std::to_string(i)), false).AddText(Text("inner"));
            node.AddAttribute(Text("a" + std::to_string(i)), i % 2 == 0 ? Text("v") : nullptr);
            node.AddClear(Text("s" + std::to_string(i)), "<!--", "-->");
        }
        node.Compact();
        ASSERT_EQ(node.GetChildCount(), count);
        for (unsigned i = 0; i < count; ++i)
        {
            EXPECT_EQ(node.GetText(i), "t" + std::to_string(i));
            EXPECT_EQ(node.GetChild(i).GetName(), "c" + std::to_string(i));
            EXPECT_EQ(node.GetClear(i).value, "s" + std::to_string(i));
            EXPECT_EQ(node.GetData()->attributes[i].name, "a" + std::to_string(i));
            EXPECT_EQ(node.GetData()->attributes[i].value != nullptr, i % 2 == 0);
            const std::uint32_t* const order = node.GetData()->order + i * 4;
            EXPECT_EQ(std::vector(order, order + 4),
                      (std::vector{i * 4 + Vellum::XmlTextEntry, i * 4 + Vellum::XmlChildEntry,
                                   i * 4 + Vellum::XmlAttributeEntry, i * 4 + Vellum::XmlClearEntry}));
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
        CXmlNode node = Top();
        for (unsigned i = 0; i < count; ++i)
            for (const char* prefix : {"KEY", "key", "same"})
                node.AddChild(Text(prefix + (*prefix == 's' ? "" : std::to_string(i))), false);
        for (unsigned i = 0; i < count; ++i)
            EXPECT_EQ(node.GetChild(("Key" + std::to_string(i)).c_str()).GetName(), "KEY" + std::to_string(i));
        EXPECT_EQ(node.GetChild("SAME").GetData(), node.GetChild(2u).GetData());
        for (const char* absent : {"", "ke", "key", "key00", "other"})
            EXPECT_TRUE(node.GetChild(absent).IsEmpty()) << absent;
        node.AddChild(Text("late"), false); // an index made before doesn't hide it
        EXPECT_STREQ(node.GetChild("LATE").GetName(), "late");
    }
}

TEST(CXmlNode, APartOutlivesTheTop)
{
    CXmlNode top = Top();
    CXmlNode part = top.AddChild(Text("part"), true);
    part.AddChild(Text("below"), false).AddText(Text("text"));
    const CXmlNode copy = part;
    top = CXmlNode();
    EXPECT_EQ(part.GetData()->parent, nullptr);
    part = part.GetChild("below"); // drops one handle of two
    EXPECT_STREQ(part.GetText(0), "text");
    EXPECT_EQ(part.GetData()->parent, copy.GetData());
    const CXmlNode& self = part;
    part = self;
    EXPECT_STREQ(part.GetName(), "below");
}

TEST(CXmlNode, ADeepTreeIsDroppedWithoutDeepRecursion)
{
    CXmlNode top = Top();
    CXmlNode node = top;
    for (unsigned depth = 0; depth < 1'000'000; ++depth)
        node = node.AddChild(Text("a"), false);
    node = CXmlNode();
}

TEST(CXmlNode, WhatCouldNotBeAllocatedIsNotAdded)
{
    CXmlNode node = Top();
    EXPECT_TRUE(node.AddChild(nullptr, false).IsEmpty());
    node.AddAttribute(nullptr, Text("freed"));
    node.AddText(nullptr);
    node.AddClear(nullptr, "<!--", "-->");
    EXPECT_EQ(node.GetData()->order, nullptr);

    const auto failures = Support::FailEachAllocation(
        []
        {
            try
            {
                CXmlNode failing = Top();
                for (unsigned i = 0; i < 20; ++i)
                    failing.AddChild(Text("c"), false).AddAttribute(Text("a"), Text("v"));
                failing.Compact();
                EXPECT_FALSE(failing.GetChild("c").IsEmpty());
            }
            catch (const std::bad_alloc&)
            {
            }
        });
    EXPECT_GT(failures, 100u);
}

} // namespace
