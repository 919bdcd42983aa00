#include "Vellum/Vellum.h"

#include "DocsExample.h"
#include "Support/Clients.h"
#include "Support/Testing.h"

using Vellum::CException;
using Vellum::CWriterJson;
using Vellum::IContainerWriter;
using Vellum::IDataWriter;

namespace
{

template <class Root>
std::string WriteJson(const Root& root, bool showPoint = true)
{
    std::ostringstream stream;
    CWriterJson writer(stream);
    writer.SetShowPoint(showPoint);
    writer.Write(root);
    return stream.str();
}

std::string ValueText(const std::string& value)
{
    const std::string text = WriteJson(ElementsOf(value));
    return text.substr(2, text.size() - 5); // between "[→" and "\n]\n"
}

// Sequences of sequences, the innermost empty.
void WriteNested(IContainerWriter& writer, int depth)
{
    if (depth > 0)
        writer.Write(CElements([=](IContainerWriter& w) { WriteNested(w, depth - 1); }));
}

TEST(CWriterJson, LaysOutTheWorkedExample)
{
    const CElements rows = ElementsOf(FieldsOf("a", 1), FieldsOf("a", 2));
    const CFields root =
        FieldsOf("name", "x", "count", 3, "ratio", 1.5, "ok", true, "inner", FieldsOf("a", 1, "b", "two"), "list",
                 ElementsOf(1, 2), "none", FieldsOf(), "nothing", ElementsOf(), "rows", rows);
    EXPECT_EQ(WriteJson(root), JsonExample());
}

TEST(CWriterJson, EmptyRootsAndDeepOnes)
{
    EXPECT_EQ(WriteJson(CFields()), "{\n}\n");
    EXPECT_EQ(WriteJson(CElements()), "[\n]\n");
    EXPECT_EQ(WriteJson(CElements([](IContainerWriter& w) { WriteNested(w, 2); })), Lines("[→[→[", "→→]", "→]", "]"));

    // Deeper than any block of TABs and than any reader would follow.
    const std::string deep = WriteJson(CElements([](IContainerWriter& w) { WriteNested(w, 3000); }));
    EXPECT_NE(deep.find('\n' + std::string(3000, '\t') + "]\n"), std::string::npos);
}

// Each byte at each place of two blocks of eight, and what is longer than any buffer.
TEST(CWriterJson, TextsAreEscapedByteByByteUpToTheirFirstNul)
{
    const std::string letters = "btn.fr";
    for (int byte = 0; byte < 256; ++byte)
        for (std::size_t at = 0; at < 17; ++at)
        {
            const auto character = static_cast<char>(byte);
            std::string escaped(1, character);
            if (character == '"' || character == '\\')
                escaped.insert(0, 1, '\\');
            else if (byte >= 8 && byte <= 13 && byte != 11)
                escaped = {'\\', letters[static_cast<std::size_t>(byte - 8)]};
            std::string text(17, 'x');
            text[at] = character;
            const std::string behind = byte == 0 ? "" : escaped + std::string(16 - at, 'x');
            EXPECT_EQ(ValueText(text), '"' + std::string(at, 'x') + behind + '"') << byte;
        }
    const std::string large(100000, 'y');
    EXPECT_EQ(ValueText(large + '"' + large), '"' + large + "\\\"" + large + '"');
}

TEST(CWriterJson, ShowPointReachesNestedLevelsAndTakesEffectAtTheNextWrite)
{
    std::ostringstream stream;
    CWriterJson writer(stream);
    const CFields root(
        [&](IDataWriter& w)
        {
            writer.SetShowPoint(false);
            w.Write("i", FieldsOf("x", 100.0));
        });
    writer.Write(root);
    CWriterJson(writer).Write(root); // a copy has the setting and the stream
    EXPECT_EQ(stream.str(), Lines("{→\"i\":", "→{→\"x\":100.00000000000000", "→}", "}") +
                                Lines("{→\"i\":", "→{→\"x\":100", "→}", "}"));
}

TEST(CWriterJson, PrecisionShowpointAndBoolalphaStayOnTheStreamAsSetLast)
{
    std::ostringstream stream;
    CWriterJson writer(stream);
    writer.Write(ElementsOf("text"));
    EXPECT_EQ(stream.precision(), 6);
    EXPECT_EQ(stream.flags(), std::ios_base::dec | std::ios_base::skipws);

    writer.Write(ElementsOf(255, 1.5, true));
    EXPECT_EQ(stream.precision(), 17);
    EXPECT_EQ(stream.flags(),
              std::ios_base::dec | std::ios_base::skipws | std::ios_base::showpoint | std::ios_base::boolalpha);

    writer.SetShowPoint(false);
    writer.Write(ElementsOf(1.5f));
    EXPECT_EQ(stream.precision(), 9);
    EXPECT_EQ(stream.flags(), std::ios_base::dec | std::ios_base::skipws | std::ios_base::boolalpha);
}

// Takes a few characters and no more.
class CFullBuffer : public std::streambuf
{
    int_type overflow(int_type character) override { return left-- > 0 ? character : traits_type::eof(); }
    int left = 5;
};

} // namespace
