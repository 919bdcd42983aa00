#include "Vellum/src/XmlParser.h"

#include <set>
#include <sys/mman.h>
#include <unistd.h>

#include "Support/Testing.h"

namespace
{

using Vellum::CXmlNode;

// One line for a tree: name(entries in their order), with @ for an attribute, ' ' around a text, { } around a clear
// section with its opening tag in front, ? in front of a declaration, * for the node around several top-level elements.
std::string Dump(const CXmlNode& node)
{
    if (node.IsEmpty())
        return "-";
    std::string dump = node.IsDeclaration() ? "?" : "";
    dump += node.GetName() == nullptr ? "*" : node.GetName();
    for (std::uint32_t place = 0; place < node.GetEntryCount(); ++place)
    {
        const auto [kind, index] = node.GetEntry(place);
        dump += place == 0 ? "(" : " ";
        if (kind == Vellum::XmlChildEntry)
            dump += Dump(node.GetChild(index));
        else if (kind == Vellum::XmlTextEntry)
            dump += "'" + std::string(node.GetText(index)) + "'";
        else if (kind == Vellum::XmlClearEntry)
            dump += node.GetClear(index).openTag + ("{" + std::string(node.GetClear(index).value)) + "}";
        else
            dump +=
                "@" + std::string(node.GetAttribute(index).name) +
                (node.GetAttribute(index).value == nullptr ? "" : "=" + std::string(node.GetAttribute(index).value));
    }
    return dump + (node.GetEntryCount() == 0 ? "()" : ")");
}

std::string DumpText(std::string_view text, Vellum::SXmlParseOutcome* outcome = nullptr)
{
    return Dump(Vellum::ParseXmlText(ExactText(text).get(), outcome));
}

struct STree
{
    std::string text;
    std::string dump;
    std::int32_t error = Vellum::XmlOk;
};

struct SRejected
{
    std::string text;
    std::int32_t error;
    std::int32_t position;
};

const STree Trees[] = {
    {"", "*()"},
    {" \t\r\n ", "*()"},
    {"junk", "*()"},
    {"<a/>", "a()"},
    {"<a></a>", "a()"},
    {"<a ></a >", "a()"},
    {"<a/>junk", "a()"},
    {"<a/><b/>", "*(a() b())"},
    {"\xEF\xBB\xBF<?xml?><a/>", "*('\xEF\xBB\xBF' ?xml?(a()))"},
    {"<!-- c --><?xml?><a/>", "*(<!--{ c } ?xml?(a()))"},

    // Declarations take all that follows.
    {"<?xml version=\"1.0\"?><a>x</a>", "?xml(@version=1.0 a('x'))"},
    {"<?xml version=1.0?><a/><b/>", "?xml(@version=1.0 a() b())"},
    {"<?xml version?><a/>", "?xml(@version a())"},
    {"<?xml a=?\?><a/>", "?xml(@a=? a())"},
    {"<?xml a ?><a/>", "?xml(@a a())"},
    {"<?xml a=1 ?b?><a/>", "?xml(@a=1 @?b a())"},
    {"<?xml?><a/>", "?xml?(a())"},
    {"<?a/><b/>", "*(?a() b())"},
    {"<a><?pi b?>x</a>", "a(?pi(@b 'x'))", Vellum::XmlElementNotClosed},
    {"<a><?pi", "a(?pi())"}, // no element notices the end

    // Tags that look like one in front of them.
    {"<a>1</a><ab>2</ab><A>3</a><a>4</a>", "*(a('1') ab('2') A('3') a('4'))"},
    {"<r><a>1</a><b/><c>2</c></r><r><c>3</c><a>4</r>", "*(r(a('1') b() c('2')) r(c('3') a('4')))",
     Vellum::XmlElementNotClosed},
    {"<a//><a/><a//>", "*(a/() a() a/())"},
    {"<r><pre a></pre><PRE></PRE></r>", "r(pre(@a) <PRE>{})"},
    {"< !--></!--><!-->-->", "*(!--() <!--{>})"},

    // Attributes.
    {"<a b>", "a(@b)", Vellum::XmlElementNotClosed},
    {"<a b c=1 d='2' e=\"3\"/>", "a(@b @c=1 @d=2 @e=3)"},
    {"<a b = c/d x=y/>", "a(@b=c/d @x=y)"},
    {"<a b='&lt;&#37;\"' c='' d=\"'\"/>", "a(@b=<%\" @c= @d=')"},
    {"<a b='1 c=2/>", "a(@b='1 @c=2)"},
    {"<a b=c'd e/>", "a(@b=c'd @e)"},
    {"<a? b?/>", "a?(@b?)"},
    {"<a b=\"1", "a(@b=\"1)", Vellum::XmlElementNotClosed}, // a quote without its partner is a letter

    // End tags and texts.
    {"<a><b>text</a>", "a(b('text'))", Vellum::XmlElementNotClosed},
    {"<a>  x  &lt;&#65; \"y&quot;  </a>", "a('x  <A \"y\"')"},
    {"<a>\xE9</a>", "a()", Vellum::XmlElementNotClosed}, // a lead byte hides what its step jumps over
    {"<?x a=&lt;\xF0", "?x(@a=<\xF0)"},                  // the step would pass the end

    // Clear sections.
    {"<a>x<!-- c -->y</a>", "a('x' <!--{ c } 'y')"},
    {"<a><![cdata[ <b>&]] ]]></a>", "a(<![CDATA[{ <b>&]] })"},
    {"<a><![CDATA[1]]><!--2--><![CDATA[3]]>4</a>", "a(<![CDATA[{1} <!--{2} <![CDATA[{3} '4')"},
    {"<a><PRE>x<b></PRE><script>y</Script></a>", "a(<PRE>{x<b>} <Script>{y})"},
    {"<!DOCTYPE a [<!ENTITY e \"v\">]><a/>", "*(<!DOCTYPE{ a [<!ENTITY e \"v\"} ']>' a())"},
};

const SRejected RejectedTexts[] = {
    {"<a><", Vellum::XmlNoElementName, 4},
    {"<?", Vellum::XmlNoElementName, 2},
    {"<a></", Vellum::XmlBadEndTag, 5},
    {"<a></a", Vellum::XmlBadEndTag, 6},
    {"<a b='1<2'>", Vellum::XmlUnexpectedToken, 7},
    {"<a></b></a>", Vellum::XmlStrayEndTag, 5},
    {"<?xml?><a/></x>", Vellum::XmlStrayEndTag, 13},
    {"<a><!-- c", Vellum::XmlClearNotClosed, 3},
    {"<pre>x</pre>", Vellum::XmlClearNotClosed, 0},
    {"<a \"b\">", Vellum::XmlUnexpectedToken, 3},
    {"<a b \"c\">", Vellum::XmlUnexpectedToken, 5},
    {"<a b=>", Vellum::XmlUnexpectedToken, 5},
    {"<a<b>", Vellum::XmlUnexpectedToken, 2},
    {"<a>1 & 2</a>", Vellum::XmlBadReference, 5},
    {"<a>&copy;</a>", Vellum::XmlBadReference, 3},
    {"<a>&#xZZ;</a>", Vellum::XmlBadReference, 3},
    {"<a b='x&'/>", Vellum::XmlBadReference, 7},
};

TEST(XmlParser, TextsBecomeTrees)
{
    for (const auto& [text, dump, error] : Trees)
    {
        Vellum::SXmlParseOutcome outcome{};
        EXPECT_EQ(DumpText(text, &outcome), dump) << text;
        EXPECT_EQ(outcome.error, error) << text;
    }
    EXPECT_TRUE(Vellum::ParseXmlText(nullptr).IsEmpty());
}

TEST(XmlParser, BadTextsAreRejectedWhereTheyAreBad)
{
    for (const auto& [text, error, position] : RejectedTexts)
    {
        Vellum::SXmlParseOutcome outcome{};
        EXPECT_EQ(DumpText(text, &outcome), "-") << text;
        EXPECT_STREQ(Vellum::GetXmlErrorName(outcome.error), Vellum::GetXmlErrorName(error)) << text;
        EXPECT_EQ(outcome.position, position) << text;
    }
}

// Each part lies in a block of its own size, so that a sanitizer sees a read behind its end.
TEST(XmlParser, TextsCutAtEveryByteAreReadToTheirEndOnly)
{
    std::vector<std::string> texts;
    std::ranges::transform(Trees, std::back_inserter(texts), &STree::text);
    std::ranges::transform(RejectedTexts, std::back_inserter(texts), &SRejected::text);
    for (const std::string_view text : texts)
        for (std::size_t size = 0; size < text.size(); ++size)
        {
            Vellum::SXmlParseOutcome outcome{};
            DumpText(text.substr(0, size), &outcome);
            EXPECT_LE(outcome.position, static_cast<std::int32_t>(size));
        }
}

std::string Repeat(std::string_view piece, std::size_t count)
{
    std::string text;
    while (count-- != 0)
        text += piece;
    return text;
}

// One memory of 64 MiB, mapped again and again, is the text.
TEST(XmlParser, TextsOfTwoGigabytesAreRefused)
{
    constexpr std::size_t Block = 64 << 20, Size = std::size_t{1} << 31;
    const int file = ::memfd_create("text", 0);
    ASSERT_EQ(::ftruncate(file, Block), 0);
    void* const room = ::mmap(nullptr, Size + 1, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(room, MAP_FAILED);
    char* const text = static_cast<char*>(room);
    const auto map = [&](std::size_t at, int protection)
    { return ::mmap(text + at, Block, protection, MAP_SHARED | MAP_FIXED, file, 0); };
    ASSERT_NE(map(0, PROT_READ | PROT_WRITE), MAP_FAILED);
    std::fill_n(text, Block, '<'); // is wrong at once
    for (std::size_t at = Block; at < Size; at += Block)
        ASSERT_NE(map(at, PROT_READ), MAP_FAILED);

    Vellum::SXmlParseOutcome outcome{};
    EXPECT_TRUE(Vellum::ParseXmlText(text, &outcome).IsEmpty());
    EXPECT_EQ(outcome.error, Vellum::XmlTextTooLong);
    EXPECT_TRUE(Vellum::ParseXmlText(text + 1, &outcome).IsEmpty());
    EXPECT_EQ(outcome.error, Vellum::XmlNoElementName);
    ::munmap(room, Size + 1);
    ::close(file);
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
