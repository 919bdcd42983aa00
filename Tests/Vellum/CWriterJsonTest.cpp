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

// Deeper than any block of TABs and than any reader would follow.
TEST(CWriterJson, IndentsAsDeepAsItGoes)
{
    const std::string deep = WriteJson(CElements([](IContainerWriter& w) { WriteNested(w, 3000); }));
    EXPECT_NE(deep.find('\n' + std::string(3000, '\t') + "]\n"), std::string::npos);
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

} // namespace
