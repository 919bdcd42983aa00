#include "Groundwork/CbStreamReadBinaryBuffer.h"

#include "Vellum/CReaderBinary.h"
#include "Vellum/CReaderJson.h"
#include "Vellum/CReaderXml.h"

#include "Support/Testing.h"
#include "Support/Texts.h"

// What the Check of each reader tells of a broken document: where it is broken, the path there, and a sentence.
namespace
{

using namespace Vellum;

struct SBroken
{
    const char* document;
    std::uint64_t offset;
    std::uint32_t line, column;
    const char* path;
    const char* reason;
};

void Expect(const SBroken& broken, const SOutcome& outcome)
{
    SCOPED_TRACE(broken.document);
    EXPECT_FALSE(outcome.isAccepted);
    EXPECT_EQ(outcome.offset, broken.offset);
    EXPECT_EQ(outcome.line, broken.line);
    EXPECT_EQ(outcome.column, broken.column);
    EXPECT_EQ(outcome.path, broken.path);
    EXPECT_EQ(outcome.reason, broken.reason);
}

TEST(Checks, TellWhatIsWrongInJson)
{
    const SBroken table[] = {
        {"{\"lines\":[{},\n {\"count\" 1}]}", 24, 2, 11, "lines[1]", "Expected a colon behind the key, found \"1\"."},
        {"{\"a\":[1,2", 9, 1, 10, "a", "Expected a comma or \"]\", found the end of the text."},
        {"{\"a\":[1,]}", 8, 1, 9, "a", "Expected a value behind the comma, found \"]\"."},
        {"[[,1]]", 2, 1, 3, "[0]", "Expected a value or \"]\", found \",\"."},
        {"{a:1}", 1, 1, 2, "", "Expected a key in quotes or \"}\", found \"a\"."},
        {"{\"a\":\"b", 5, 1, 6, "a",
         "Expected a closing quote for the text that begins here, found the end of the text."},
        {"\xEF\xBB\xBF{}", 0, 1, 1, "", "Expected an object or a sequence, found the byte EF."},
        {"\x80", 0, 1, 1, "", "Expected an object or a sequence, found the byte 80."},
    };
    for (const SBroken& broken : table)
        Expect(broken, CReaderJson(broken.document).Check());
    EXPECT_FALSE(CReaderJson(nullptr).Check().isAccepted);
    for (const char* accepted : {"", "null", "{\"a\":,}x", "[1 2]"})
        EXPECT_TRUE(CReaderJson(accepted).Check().isAccepted) << accepted;
}

TEST(Checks, TellWhatIsWrongInBinaryDocuments)
{
    const SBroken table[] = {
        {"00 00 00 00 63 00 00 00 00", 4, 0, 0, "",
         "Expected the tag of an object, 16, or of a sequence, 17, found 99."},
        {"00 00 00 00 10 01 00 00 00 01 00 00 00 61 00 00 00 00 01 11 01 00 00 00 00 00 00 00 0C 02 00 00 00 "
         "00 00 00 00 05 00 00 00 61",
         41, 0, 0, "a[1]", "Expected a text of length 5, found the end of the document after 1 byte."},
        {"00 00 00 00 11 00 00 00 00 0B 00 00 00 20", 10, 0, 0, "",
         "Expected less than 4 GiB of numbers, found 4294967296 bytes."},
    };
    for (const SBroken& broken : table)
    {
        const std::string bytes = Support::Bytes(broken.document);
        CbStreamReadBinaryBuffer stream(bytes.data(), bytes.size());
        Expect(broken, CReaderBinary::Check(stream));
    }
}

TEST(Checks, TellWhatIsWrongInXml)
{
    const SBroken table[] = {
        {"<?xml?>\n<r><a><b>1</b><b>2</a></r>", 28, 2, 21, "a[1]",
         "Expected the end of the element \"b\", which is opened in line 2, column 16, found that of another one."},
        {"<?xml?><r><l><elt>1</elt><elt>&x;</elt></l></r>", 30, 1, 31, "l[1]",
         "Expected a reference such as &amp; or &#65;, found \"&\"."},
        {"<?xml?><r><!-- <b> --><a c='<'>", 28, 1, 29, "a",
         "Expected an attribute or the end of the tag, found \"<\"."},
        {"<?xml?><r><![CDATA[</r>", 10, 1, 11, "",
         "Expected the end of the section that begins here, found the end of the text."},
        {"<?xml?><r></r></s>", 16, 1, 17, "", "Expected the end tag of an open element, found \"s\"."},
        {"<?xml?><r><>", 11, 1, 12, "", "Expected the name of an element, found \">\"."},
    };
    for (const SBroken& broken : table)
        Expect(broken, CReaderXml(broken.document).Check());
}

TEST(Checks, TellWhyARootOfXmlIsntFound)
{
    const SBroken table[] = {
        {"<?xml?><r/><s><t/></s>", 8, 1, 9, "", "Expected the root \"my-T\", found \"r\", \"s\"."},
        {"<my-T/>", 1, 1, 2, "",
         "Expected a declaration such as <?xml version=\"1.0\"?> in front of the root, found \"my-T\" standing alone."},
        {"\xEF\xBB\xBF<?xml?><my-T/>", 11, 1, 12, "",
         "Expected a declaration or an element at the beginning, found a byte order mark."},
        {"<?xml?><?style?><my-T/>", 17, 1, 18, "",
         "Expected the root \"my-T\" directly behind the first declaration, which has to stand at the beginning, "
         "found another declaration between them."},
        {"<!-- c --><?xml?><my-T/>", 18, 1, 19, "",
         "Expected the root \"my-T\" directly behind the first declaration, which has to stand at the beginning, "
         "found something in front of the declaration."},
        {"<?xml?>", 0, 1, 1, "", "Expected the root \"my-T\", found none."},
        {"<?xml?><a/><b/><c/><d/><e/>", 8, 1, 9, "",
         "Expected the root \"my-T\", found \"a\", \"b\", \"c\", \"d\", \"e\"."},
        {"<?xml?><a/><b/><c/><d/><e/><f/>", 8, 1, 9, "",
         "Expected the root \"my-T\", found \"a\", \"b\", \"c\", \"d\", \"e\" and others."},
        {"", 0, 1, 1, "", "Expected the root \"my-T\", found none."},
        {nullptr, 0, 1, 1, "", "Expected the root \"my-T\", found no text."},
    };
    for (const SBroken& broken : table)
    {
        Expect(broken, CReaderXml(broken.document).Check("my::T"));
        EXPECT_TRUE(CReaderXml(broken.document).Check().isAccepted);
    }
    EXPECT_TRUE(CReaderXml("<?xml?><!-- c --><MY-T/>").Check("my::T").isAccepted);
}

} // namespace
