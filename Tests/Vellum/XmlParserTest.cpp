#include "Vellum/src/XmlParser.h"

#include <set>

#include "Support/Testing.h"
#include "Support/XmlTrees.h"

namespace
{

std::string DumpText(std::string_view text, Vellum::SXmlParseOutcome* outcome = nullptr)
{
    return Dump(Vellum::ParseXmlText(ExactText(text).get(), outcome));
}

std::string Repeat(std::string_view piece, std::size_t count)
{
    std::string text;
    while (count-- != 0)
        text += piece;
    return text;
}

TEST(XmlParser, ElementsAndDeclarationsNestAsDeepAsTheLimit)
{
    Vellum::SXmlParseOutcome outcome{};
    const std::string deepest = Repeat("<a>", 1024) + Repeat("</a>", 1024);
    EXPECT_NE(DumpText("<?xml?>" + deepest, &outcome), "-");
    EXPECT_EQ(outcome.error, Vellum::XmlOk);
    EXPECT_NE(DumpText(Repeat("<?a>", 1024), &outcome), "-");
    EXPECT_NE(DumpText(Repeat("<a/>", 5000), &outcome), "-"); // side by side

    EXPECT_EQ(DumpText("<a>" + deepest + "</a>", &outcome), "-");
    EXPECT_EQ(outcome.error, Vellum::XmlTooDeep);
    EXPECT_EQ(outcome.position, 1024 * 3 + 1);
    EXPECT_EQ(DumpText(Repeat("<?a>", 1000000), &outcome), "-");
    EXPECT_EQ(outcome.error, Vellum::XmlTooDeep);
}

TEST(XmlParser, ErrorsHaveNames)
{
    std::string names;
    for (std::int32_t error = -1; error < 20; ++error)
        names += Vellum::GetXmlErrorName(error) + std::string(" ");
    EXPECT_EQ(names, " XmlOk XmlElementNotClosed   XmlNoElementName XmlBadEndTag  XmlStrayEndTag XmlClearNotClosed "
                     "XmlUnexpectedToken     XmlBadReference XmlTooDeep XmlTextTooLong    ");
}

// What costs most for its length: many nodes, attributes, texts, sections, open elements.
TEST(XmlParser, MemoryStaysInProportionToTheText)
{
    for (const char* piece : {"<a/>", "<a>x", "<a b ", "x<!---->", "<?a b>", "x<a/>", "<a>x</a>", "<a b/>", "b "})
    {
        const bool isTag = piece == std::string_view("b ");
        const std::string text = (isTag ? "<a " : "") + Repeat(piece, piece[1] == 'a' || isTag ? 100000 : 1000);
        const CAllocationCounter counter;
        Vellum::ParseXmlText(text.c_str());
        EXPECT_LE(counter.GetBytes(), 64 * text.size()) << piece;
    }
}

TEST(XmlParser, ATextThatCannotBeAllocatedIsLeftOutOrEndsTheParse)
{
    const std::string large(2000, 'x'); // needs a block of memory for itself
    const std::string name(9000, 'n');
    const std::string text = "<a><!--" + large + "--><" + name + "/><c>" + Repeat(large, 10) + "</c>y</a>";
    std::set<std::string> dumps;
    const auto parse = [&]
    {
        std::string dump = Dump(Vellum::ParseXmlText(text.c_str()));
        for (const auto& [from, to] : {std::pair(Repeat(large, 10), "XX"), {large, "X"}, {name, "N"}})
            if (const auto at = dump.find(from); at != std::string::npos)
                dump.replace(at, from.size(), to);
        dumps.insert(dump);
    };
    FailEachAllocation([&] { GetsThrough(parse); });
    EXPECT_EQ(dumps, (std::set<std::string>{"a(<!--{X} N() c('XX') 'y')",  // none failed
                                            "a(N() c('XX') 'y')",          // the section
                                            "a(<!--{X} '/>' c('XX') 'y')", // the name: as if there were no element
                                            "a(<!--{X} N() c())"}));       // the text, which ends the parse
}

} // namespace
