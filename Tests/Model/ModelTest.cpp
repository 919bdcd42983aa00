#include <ctime>

#include <gtest/gtest.h>

#include "Scribe/CScribe.h"

#include "Groundwork/CbStreamReadBinaryBuffer.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"

#include "Vellum/src/CBinaryWalker.h"
#include "Vellum/src/XmlParser.h"

#include "Model/Documents.h"
#include "Model/Formats.h"
#include "Model/Library.h"
#include "Model/Values.h"
#include "Support/Binary.h"
#include "Support/CEnvironment.h"
#include "Support/Clients.h"
#include "Support/FailEachAllocation.h"
#include "Support/GermanLocales.h"
#include "Support/Property.h"
#include "Support/Texts.h"
#include "Support/XmlTrees.h"

// The library and a second, plain telling of its formats are given the same trees and documents, and must agree: in
// each byte that is written, each value that is read, and each exception's class and function name.
//
// RC_PARAMS="seed=N" repeats a run, and what is printed with a failure repeats that alone. VELLUM_MODEL_SECONDS=N goes
// on for that long, in time of the processor, with each property.
namespace
{

using namespace Model;
using Support::CTape;

// Runs a property over tapes, with the exceptions kept out of the log.
void Check(void (*property)(CTape))
{
    Scribing::SetSink([](const Scribing::SEntry&) {});
    const Support::CEnvironment zone("TZ", "Europe/Berlin");
    const std::clock_t end = Support::GetEndOfTest(0.7);
    unsigned int round = 0;
    while (Support::CheckProperty([&](CTape& tape) { property(tape); }, 100, round++) && std::clock() < end)
        ;
    Scribing::SetSink({});
}

// Runs a part of the library, which raises nothing, on a thread whose numbers have a decimal comma.
template <class Body>
void Abroad(const Body& body)
{
    const Support::CGermanThread german;
    body();
    HOLDS(german.IsInForce());
}

// What differs first, with what stands around it.
std::string Difference(const std::string& library, const std::string& model)
{
    const auto at = static_cast<std::size_t>(std::ranges::mismatch(library, model).in1 - library.begin());
    const std::size_t from = at < 150 ? 0 : at - 150;
    const auto part = [&](const std::string& text)
    { return testing::PrintToString(text.substr(std::min(from, text.size()), 300)); };
    return "differ at " + std::to_string(at) + "\nlibrary " + part(library) + "\nmodel   " + part(model);
}

void ExpectSame(const std::string& library, const std::string& model)
{
    if (library != model)
        throw Support::SBroken(Difference(library, model));
}

void ExpectSame(const SWritten& library, const SWritten& model)
{
    ExpectSame(library.raised, model.raised);
    ExpectSame(library.document, model.document);
}

template <class Body>
std::string Raised(const Body& body)
{
    try
    {
        body();
    }
    catch (...)
    {
        return ShowRaised();
    }
    return {};
}

SWritten LibraryBinary(const SNode& root, bool isPlain)
{
    SWritten written;
    CbStreamWriteBinaryBuffer buffer;
    Support::CClientWriter plain;
    CbStreamWriteBinary& stream = isPlain ? static_cast<CbStreamWriteBinary&>(plain) : buffer;
    const auto write = [&](const auto& client) { Vellum::CWriterBinary(stream).Write(client); };
    written.raised = Raised([&] { WithRoot(root, write); });
    written.document =
        isPlain ? plain.bytes : std::string(reinterpret_cast<const char*>(buffer.GetData()), buffer.GetSize());
    return written;
}

// A visitor for the document of a tree, or for what has become of it.
CVisitor VisitorOf(const SNode& root, CTape& tape)
{
    std::vector<std::string> keys = {"", "absent", "ID", "kEY", "altarage"};
    for (std::size_t i = 0; i < 3 && i < root.items.size(); ++i)
    {
        const std::string& key = root.items[root.items.size() - 1 - i].key;
        keys.insert(keys.end(), {key, Folded(key)});
    }
    return CVisitor(keys, root.typeName, tape.OneIn(2));
}

void BinaryWrites(CTape tape)
{
    const bool isPlain = tape.OneIn(2);
    const SNode root = AnyTree(tape, tape.OneIn(2));
    ExpectSame(LibraryBinary(root, isPlain), WriteBinary(root, false));
}

void BinaryReads(CTape tape)
{
    const SNode root = AnyTree(tape, true);
    const std::string document = Mutated(WriteBinary(root, tape.OneIn(3)).document, tape, true);
    CVisitor library = VisitorOf(root, tape), model = library;
    const bool isSequence = root.isSequence != tape.OneIn(16);
    model.Run([&] { ReadBinary(document, isSequence, model); });
    library.Run(
        [&, isPlain = tape.OneIn(2)]
        {
            const std::vector<char> exact(document.begin(), document.end());
            CbStreamReadBinaryBuffer buffer(exact.data(), exact.size());
            Support::CClientReader plain(document);
            const Vellum::CReaderBinary reader(isPlain ? static_cast<CbStreamReadBinary&>(plain) : buffer);
            ReadRoot(reader, isSequence, library);
        });
    ExpectSame(library.GetNotes(), model.GetNotes());
}

// The walker accepts what the reader accepts, and its parts lie side by side from the start to the end or the damage.
void BinaryWalks(CTape tape)
{
    const SNode root = AnyTree(tape, true);
    const std::string document = Mutated(WriteBinary(root, tape.OneIn(3)).document, tape, true);
    CbStreamReadBinaryBuffer read(document.data(), document.size()), walked = read;
    const bool isSound = Raised([&] { const Vellum::CReaderBinary reader(read); }).empty();

    std::uint64_t end = 0;
    Vellum::CBinaryWalker walker(walked,
                                 [&](const Vellum::SBinaryPart& part)
                                 {
                                     HOLDS(part.offset == end);
                                     HOLDS(part.head <= part.size);
                                     end += part.size;
                                 });
    const std::optional<Vellum::SBinaryDamage> damage = walker.Walk();
    HOLDS(damage.has_value() != isSound);
    HOLDS((isSound ? end == document.size() - read.GetLeft() : damage->offset <= document.size()));
    HOLDS(end <= document.size());
}

template <class Writer>
SWritten LibraryText(const SNode& root, const std::function<void(Writer&)>& setUp)
{
    std::ostringstream stream;
    SWritten written;
    Writer writer(stream);
    setUp(writer);
    const auto write = [&] { WithRoot(root, [&](const auto& client) { writer.Write(client); }); };
    Abroad([&] { written.raised = Raised(write); });
    written.document = stream.str();
    return written;
}

void JsonWrites(CTape tape)
{
    const bool showPoint = tape.OneIn(2);
    const SNode root = AnyTree(tape, tape.OneIn(2));
    ExpectSame(LibraryText<Vellum::CWriterJson>(root, [&](auto& writer) { writer.SetShowPoint(showPoint); }),
               WriteJson(root, showPoint));
}

void JsonReads(CTape tape)
{
    const SNode root = AnyTree(tape, tape.OneIn(2));
    const std::string whole = tape.OneIn(2) ? AnyJson(tape) : WriteJson(root, tape.OneIn(2)).document;
    const std::string document = Mutated(whole, tape, false);
    CVisitor library = VisitorOf(root, tape), model = library;
    const bool isSequence = document.starts_with('[') != tape.OneIn(16);
    model.Run([&] { ReadJson(document, isSequence, model); });
    const std::unique_ptr<char[]> text = Support::ExactText(document);
    Abroad([&] { library.Run([&] { ReadRoot(Vellum::CReaderJson(text.get()), isSequence, library); }); });
    ExpectSame(library.GetNotes(), model.GetNotes());
}

void XmlWrites(CTape tape)
{
    const SNode root = AnyTree(tape, tape.OneIn(2));
    ExpectSame(LibraryText<Vellum::CWriterXml>(root, [](auto&) {}), WriteXml(root));
}

void XmlParses(CTape tape)
{
    const std::string document = Mutated(AnyXml(tape, "a"), tape, false);
    Vellum::SXmlParseOutcome outcome{};
    const std::string tree = Support::Dump(Vellum::ParseXmlText(Support::ExactText(document).get(), &outcome));
    ExpectSame("error " + std::to_string(outcome.error) + " at " + std::to_string(outcome.position) + ": " + tree,
               ShowXml(document));
}

void XmlReads(CTape tape)
{
    const SNode root = AnyTree(tape, !tape.OneIn(4));
    const std::string whole = tape.OneIn(2) ? AnyXml(tape, root.typeName) : WriteXml(root).document;
    const std::string document = Mutated(whole, tape, false);
    CVisitor library = VisitorOf(root, tape), model = library;
    const bool isSequence = root.isSequence != tape.OneIn(16);
    const int error = ReadXml(document, isSequence, model);
    const std::unique_ptr<char[]> text = Support::ExactText(document);
    const Vellum::CReaderXml reader(text.get());
    Abroad([&] { library.Run([&] { ReadRoot(reader, isSequence, library); }); });
    ExpectSame("error " + std::to_string(reader.Check().error), "error " + std::to_string(error));
    ExpectSame(library.GetNotes(), model.GetNotes());
}

// With one allocation failing, of the library or of its client, a binary document is written as a whole or not at all;
// if the client goes on all the same, with the parts that could be had. Texts end where it happened.
void WritesWithoutMemory(CTape tape)
{
    const std::size_t which = tape.Below(tape.OneIn(4) ? 3000 : 100);
    const bool isTame = tape.OneIn(2);
    const SNode root = AnyTree(tape, isTame);
    constexpr std::size_t AtOnce = 0x1000; // larger documents go out in pieces, which the stream may have no room for
    SWritten binary, json, xml;
    const auto isRaised = [](const SWritten& written, const char* function)
    { return written.raised == "no memory" || written.raised.starts_with(function); };
    const auto isCutOff = [&](const SWritten& written, const SWritten& whole) // or the stream's state tells
    {
        return (written.raised.empty() || isRaised(written, Exception)) && whole.document.starts_with(written.document);
    };
    const auto write = [&](SWritten& written, const std::function<SWritten()>& attempt)
    { return Support::GetsThrough([&] { Support::FailAllocation(which, [&] { written = attempt(); }); }); };

    const SWritten whole = WriteBinary(root, false);
    const auto expectReadable = [&](const std::string& document)
    {
        const CVisitor start = VisitorOf(root, tape);
        const auto raised = [&](const std::string& bytes, CVisitor visitor)
        { return Raised([&] { ReadBinary(bytes, root.isSequence, visitor); }); };
        ExpectSame(raised(document, start), raised(whole.document, start)); // which may be too deep
    };
    const bool differs = write(binary, [&] { return LibraryBinary(root, false); }) && binary != whole;
    if (differs && (isTame || isRaised(binary, MemoryException)))
        HOLDS(isRaised(binary, MemoryException) && (binary.document.empty() || whole.document.size() >= AtOnce));
    else if (differs && binary.raised.empty())
        expectReadable(binary.document);
    if (!isTame)
        return;
    const SWritten wholeJson = WriteJson(root, true), wholeXml = WriteXml(root);
    if (write(json, [&] { return LibraryText<Vellum::CWriterJson>(root, [](auto&) {}); }) && json != wholeJson)
        HOLDS(isCutOff(json, wholeJson));
    if (write(xml, [&] { return LibraryText<Vellum::CWriterXml>(root, [](auto&) {}); }) && xml != wholeXml)
        HOLDS(isCutOff(xml, wholeXml));
}

// A read that ran out of memory changes nothing for the next one.
void ReadsWithoutMemory(CTape tape)
{
    const std::size_t which = tape.Below(tape.OneIn(4) ? 3000 : 100);
    const SNode root = AnyTree(tape, true);
    const CVisitor start = VisitorOf(root, tape);
    const auto expectRead = [&](const auto& read, const auto& readModel)
    {
        CVisitor spoiled = start, library = start, model = start;
        Support::FailAllocation(which, [&] { Support::GetsThrough([&] { read(spoiled); }); });
        library.Run([&] { read(library); });
        model.Run([&] { readModel(model); });
        ExpectSame(library.GetNotes(), model.GetNotes());
    };
    const std::string binary = WriteBinary(root, false).document, json = WriteJson(root, true).document,
                      xml = WriteXml(root).document;
    const auto readBinary = [&](CVisitor& visitor)
    {
        CbStreamReadBinaryBuffer stream(binary.data(), binary.size());
        ReadRoot(Vellum::CReaderBinary(stream), root.isSequence, visitor);
    };
    expectRead(readBinary, [&](CVisitor& visitor) { ReadBinary(binary, root.isSequence, visitor); });
    const Vellum::CReaderJson jsonReader(json);
    expectRead([&](CVisitor& visitor) { ReadRoot(jsonReader, root.isSequence, visitor); },
               [&](CVisitor& visitor) { ReadJson(json, root.isSequence, visitor); });
    const Vellum::CReaderXml xmlReader(xml);
    expectRead([&](CVisitor& visitor) { ReadRoot(xmlReader, root.isSequence, visitor); },
               [&](CVisitor& visitor) { ReadXml(xml, root.isSequence, visitor); });
}

// The same with the fields of each object in the order of their keys and kinds.
Vellum::CValue Sorted(Vellum::CValue value)
{
    if (value.GetKind() == Vellum::EValueKind::Sequence)
        for (Vellum::CValue& element : value.GetElements())
            element = Sorted(std::move(element));
    if (value.GetKind() != Vellum::EValueKind::Object)
        return value;
    for (auto& [key, field] : value.GetFields())
        field = Sorted(std::move(field));
    std::ranges::sort(value.GetFields(), {},
                      [](const auto& field) { return std::pair(field.key, field.value.GetKind()); });
    return value;
}

// Whatever a document has, a value of it is written and read back as it is; of a writer's binary document to the byte,
// unless it was changed. What a format can't hold is refused.
void ValuesComeBack(CTape tape)
{
    using Vellum::CValue;
    const bool isOdd = tape.OneIn(4);
    const SWritten written = WriteBinary(AnyTree(tape, tape.OneIn(2)), isOdd);
    CValue value;
    if (!written.raised.empty() || !Raised([&] { value = Support::ValueOf(written.document); }).empty())
        return;
    if (!isOdd)
        ExpectSame(Support::BinaryOf(value), written.document);
    value.Set("", CValue(value));
    HOLDS(Sorted(Support::ValueOf(Support::BinaryOf(value))) == Sorted(value));
    const auto comeBack = [&](const auto& write, const auto& read)
    {
        std::string text;
        const std::string refused = Raised([&] { text = write(value); });
        HOLDS(refused.empty() || refused.find("CDocumentException") != std::string::npos);
        if (!refused.empty())
            return;
        const CValue again = read(text);
        HOLDS(again.GetKind() == value.GetKind());
        HOLDS(read(write(again)) == again);
    };
    comeBack([](const CValue& each) { return each.ToJson(); }, [](const auto& text) { return CValue::FromJson(text); });
    comeBack([](const CValue& each) { return each.ToXml(); }, [](const auto& text) { return CValue::FromXml(text); });
}

// What Check says of a document, Read does.
void ChecksAgree(CTape tape)
{
    const SNode root = AnyTree(tape, tape.OneIn(2));
    Support::CFields object;
    Support::CElements sequence;
    const std::string bytes = Mutated(WriteBinary(root, tape.OneIn(3)).document, tape, true);
    CbStreamReadBinaryBuffer stream(bytes.data(), bytes.size()), checked = stream;
    const Vellum::SOutcome binary = Vellum::CReaderBinary::Check(checked);
    HOLDS(binary.isAccepted == Raised([&] { const Vellum::CReaderBinary reader(stream); }).empty());
    if (binary.isAccepted)
        HOLDS(checked.GetLeft() == stream.GetLeft());
    HOLDS(binary.offset <= bytes.size() && binary.isAccepted == binary.reason.empty());

    const std::string whole = tape.OneIn(2) ? AnyJson(tape) : WriteJson(root, tape.OneIn(2)).document;
    const std::unique_ptr<char[]> text = Support::ExactText(Mutated(whole, tape, false));
    const Vellum::CReaderJson reader(text.get());
    const Vellum::SOutcome json = reader.Check();
    HOLDS(json.isAccepted ==
          (Raised([&] { reader.Read(object); }).empty() || Raised([&] { reader.Read(sequence); }).empty()));
    HOLDS(json.isAccepted == Raised([&] { Vellum::CValue::FromJson(text.get()); }).empty());
    HOLDS(json.offset <= std::strlen(text.get()) && json.isAccepted == json.reason.empty());
}

TEST(Model, BinaryWritesTheSame) { Check(BinaryWrites); }
TEST(Model, BinaryReadsTheSame) { Check(BinaryReads); }
TEST(Model, BinaryWalksTheSame) { Check(BinaryWalks); }
TEST(Model, JsonWritesTheSame) { Check(JsonWrites); }
TEST(Model, JsonReadsTheSame) { Check(JsonReads); }
TEST(Model, XmlWritesTheSame) { Check(XmlWrites); }
TEST(Model, XmlParsesTheSame) { Check(XmlParses); }
TEST(Model, XmlReadsTheSame) { Check(XmlReads); }
TEST(Model, WritesWithoutMemory) { Check(WritesWithoutMemory); }
TEST(Model, ReadsWithoutMemory) { Check(ReadsWithoutMemory); }
TEST(Model, ChecksAgree) { Check(ChecksAgree); }
TEST(Model, ValuesComeBack) { Check(ValuesComeBack); }

} // namespace
