#include <chrono>
#include <cstdlib>
#include <rapidcheck.h>

#include <gtest/gtest.h>

#include "Scribe/CScribe.h"

#include "Groundwork/CbStreamReadBinaryBuffer.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"

#include "Model/Formats.h"
#include "Model/Library.h"
#include "Model/Values.h"
#include "Support/Texts.h"

// The library and a second, plain telling of its formats are given the same trees and documents, and must agree: in
// each byte that is written, each value that is read, and each exception's class and function name.
//
// RC_PARAMS="seed=N" repeats a run, and what is printed with a failure repeats that alone. VELLUM_MODEL_SECONDS=N goes
// on for that long with each property.
namespace
{

using namespace Model;

// Runs a property over tapes, with the exceptions kept out of the log.
void Check(void (*property)(CTape))
{
    Scribing::SetSink([](const Scribing::SEntry&) {});
    const char* const seconds = std::getenv("VELLUM_MODEL_SECONDS");
    const auto end = std::chrono::steady_clock::now() +
                     std::chrono::milliseconds(seconds == nullptr ? 500 : 1000 * std::atoi(seconds));
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    rc::detail::TestParams params = rc::detail::configuration().testParams;
    do
    {
        const auto result = rc::detail::checkTestable([&] { property(CTape(*AnyTape())); },
                                                      rc::detail::TestMetadata{test.name(), test.name()}, params);
        if (!result.template is<rc::detail::SuccessResult>())
        {
            std::ostringstream message;
            rc::detail::printResultMessage(result, message);
            ADD_FAILURE() << message.str();
            break;
        }
        ++params.seed;
    } while (std::chrono::steady_clock::now() < end);
    Scribing::SetSink({});
}

// What differs first, with what stands around it.
std::string Difference(const std::string& library, const std::string& model)
{
    const auto at = static_cast<std::size_t>(std::ranges::mismatch(library, model).in1 - library.begin());
    const std::size_t from = at < 150 ? 0 : at - 150;
    const auto part = [&](const std::string& text)
    { return rc::toString(text.substr(std::min(from, text.size()), 300)); };
    return "differ at " + std::to_string(at) + "\nlibrary " + part(library) + "\nmodel   " + part(model);
}

void ExpectSame(const std::string& library, const std::string& model)
{
    if (library != model)
        RC_FAIL(Difference(library, model));
}

void ExpectSame(const SWritten& library, const SWritten& model)
{
    ExpectSame(library.raised, model.raised);
    ExpectSame(library.document, model.document);
}

// Streams that have only what a client must write himself.
struct CPlainWriter final : CbStreamWriteBinary
{
    using CbStreamWriteBinary::Write;
    CbStreamWriteBinary& Write(const void* data, std::size_t count) override
    {
        bytes.append(static_cast<const char*>(data), count);
        return *this;
    }
    std::string bytes;
};

struct CPlainReader final : CbStreamReadBinary
{
    explicit CPlainReader(std::string_view bytes) : left(bytes) {}
    using CbStreamReadBinary::Read;
    std::uint64_t Read(void* data, std::size_t count) override
    {
        const std::size_t delivered = left.copy(static_cast<char*>(data), count);
        left.remove_prefix(delivered);
        return delivered;
    }
    std::string_view left;
};

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
    CPlainWriter plain;
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
    std::vector<std::string> keys = {"", "absent", "ID", "kEY"};
    for (std::size_t i = 0; i < 3 && i < root.items.size(); ++i)
        keys.push_back(root.items[root.items.size() - 1 - i].key);
    return CVisitor(keys, root.typeName, tape.OneIn(2));
}

const std::string Counts[] = {{"\0\0\0\0", 4},   {"\1\0\0\0", 4}, "\xFF\xFF\xFF\xFF",        "\xFF\xFF\xFF\x7F",
                              {"\0\0\0\x40", 4}, {"\0\1\0\0", 4}, "\xFF\xFE\xFF\xFF\xFF\xFF"};

// A few changes of a document: bytes, pieces gone, twice, exchanged or put in.
std::string Mutated(std::string document, CTape& tape, bool isBinary)
{
    for (std::size_t changes = tape.OneIn(2) ? 0 : 1 + tape.Below(3); changes > 0 && !document.empty(); --changes)
    {
        const std::size_t at = tape.Below(document.size()), size = 1 + tape.Below(tape.OneIn(4) ? 64 : 6);
        const std::string piece = document.substr(at, size);
        switch (tape.Below(8))
        {
        case 0:
            document[at] = static_cast<char>(tape.Next());
            break;
        case 1:
            document[at] = static_cast<char>(static_cast<unsigned char>(document[at]) + (tape.OneIn(2) ? 1 : 255));
            break;
        case 2:
            document.resize(at);
            break;
        case 3:
            document.erase(at, size);
            break;
        case 4:
            document.insert(tape.Below(document.size()), piece);
            break;
        case 5:
            document.erase(at, size);
            document.insert(tape.Below(document.size() + 1), piece);
            break;
        case 6:
            document.replace(at, std::min<std::size_t>(piece.size(), 4), isBinary ? tape.From(Counts) : AnyText(tape));
            break;
        default:
            document.insert(at, isBinary ? tape.From(Counts) : AnyText(tape));
        }
    }
    return document;
}

void BinaryWrites(CTape tape)
{
    const bool isPlain = tape.OneIn(2);
    const SNode root = AnyTree(tape, tape.OneIn(2));
    ExpectSame(LibraryBinary(root, isPlain), WriteBinary(root));
}

void BinaryReads(CTape tape)
{
    const SNode root = AnyTree(tape, true);
    const std::string document = Mutated(LibraryBinary(root, false).document, tape, true);
    CVisitor library = VisitorOf(root, tape), model = library;
    const bool isSequence = root.isSequence != tape.OneIn(16);
    model.Run([&] { ReadBinary(document, isSequence, model); });
    library.Run(
        [&, isPlain = tape.OneIn(2)]
        {
            const std::vector<char> exact(document.begin(), document.end());
            CbStreamReadBinaryBuffer buffer(exact.data(), exact.size());
            CPlainReader plain(document);
            const Vellum::CReaderBinary reader(isPlain ? static_cast<CbStreamReadBinary&>(plain) : buffer);
            ReadRoot(reader, isSequence, library);
        });
    ExpectSame(library.GetNotes(), model.GetNotes());
}

template <class Writer>
SWritten LibraryText(const SNode& root, const std::function<void(Writer&)>& setUp)
{
    std::ostringstream stream;
    SWritten written;
    Writer writer(stream);
    setUp(writer);
    written.raised = Raised([&] { WithRoot(root, [&](const auto& client) { writer.Write(client); }); });
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
    const std::string document = Mutated(WriteJson(root, tape.OneIn(2)).document, tape, false);
    CVisitor library = VisitorOf(root, tape), model = library;
    const bool isSequence = root.isSequence != tape.OneIn(16);
    model.Run([&] { ReadJson(document, isSequence, model); });
    const std::unique_ptr<char[]> text = Support::ExactText(document);
    library.Run([&] { ReadRoot(Vellum::CReaderJson(text.get()), isSequence, library); });
    ExpectSame(library.GetNotes(), model.GetNotes());
}

void XmlWrites(CTape tape)
{
    const SNode root = AnyTree(tape, tape.OneIn(2));
    ExpectSame(LibraryText<Vellum::CWriterXml>(root, [](auto&) {}), WriteXml(root));
}

void XmlReads(CTape tape)
{
    const SNode root = AnyTree(tape, !tape.OneIn(4));
    const std::string document = Mutated(WriteXml(root).document, tape, false);
    CVisitor library = VisitorOf(root, tape), model = library;
    const bool isSequence = root.isSequence != tape.OneIn(16);
    const int error = ReadXml(document, isSequence, model);
    const std::unique_ptr<char[]> text = Support::ExactText(document);
    const Vellum::CReaderXml reader(text.get());
    library.Run([&] { ReadRoot(reader, isSequence, library); });
    ExpectSame("error " + std::to_string(reader.Check().error), "error " + std::to_string(error));
    ExpectSame(library.GetNotes(), model.GetNotes());
}

TEST(Model, BinaryWritesTheSame) { Check(BinaryWrites); }
TEST(Model, BinaryReadsTheSame) { Check(BinaryReads); }
TEST(Model, JsonWritesTheSame) { Check(JsonWrites); }
TEST(Model, JsonReadsTheSame) { Check(JsonReads); }
TEST(Model, XmlWritesTheSame) { Check(XmlWrites); }
TEST(Model, XmlReadsTheSame) { Check(XmlReads); }

} // namespace
