#include <cstdlib>
#include <deque>
#include <Describe/Describe.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <string>
#include <vector>
#include <Vellum/Vellum.h>

#include <gtest/gtest.h>

// The documents in Tests/Data/Golden were written from the objects made here. Every system writes the same bytes, and
// reads them into objects that are written as the same bytes again. VELLUM_WRITE_GOLDEN=1 in the environment writes
// them anew.
namespace
{

using Vellum::Field;
using Vellum::Fields;

using Blob = std::vector<unsigned char>;

template <class T>
using Limits = std::numeric_limits<T>;

// A sequence whose elements are blobs. Described classes have none.
class CBlobs final : public Vellum::ISerializableContainer
{
public:
    const char* GetTypeName() const override { return "golden::Blobs"; }
    void Write(Vellum::IContainerWriter& writer) const override
    {
        for (const Blob& blob : blobs)
            writer.Write(blob.size(), blob.data());
    }
    void Read(Vellum::IContainerReader& reader) override
    {
        for (std::uint32_t i = 0; i < 3; ++i)
        {
            const Vellum::BlobRange blob = reader.GetBlob(i);
            blobs.emplace_back(blob.first, blob.second);
        }
    }

    std::vector<Blob> blobs;
};

// Of one kind: the ends of its range, and what lies between them.
template <class T>
struct SValues
{
    static constexpr auto Describe()
    {
        return Fields("golden::Values", Field("first", &SValues::first), Field("all", &SValues::all));
    }
    SValues(std::deque<T> values = {}) : first(values.empty() ? T() : values.front()), all(std::move(values)) {}

    T first;
    std::deque<T> all; // a vector of bytes would be a blob
};

template <class T>
SValues<T> Integers()
{
    return {{Limits<T>::min(), Limits<T>::max(), T(0), T(1), T(-1), T(0x0102030405060708)}};
}

template <class T>
SValues<T> Reals()
{
    return {{Limits<T>::max(),
             Limits<T>::lowest(),
             Limits<T>::min(),
             Limits<T>::denorm_min(),
             Limits<T>::epsilon(),
             Limits<T>::infinity(),
             -Limits<T>::infinity(),
             Limits<T>::quiet_NaN(),
             T(0),
             T(-0.0),
             T(0.1),
             T(1e23),
             T(0.30000000000000004),
             T(9007199254740993.0),
             T(2.2250738585072011e-308),
             T(16777217),
             T(8.5899346e9),
             T(1.17549421e-38),
             T(3.14159265358979323846),
             T(1e-5),
             T(-1.5)}};
}

struct SGolden
{
    static constexpr auto Describe()
    {
        return Fields("golden::Document", Field("flags", &SGolden::flags), Field("letters", &SGolden::letters),
                      Field("uint8", &SGolden::uint8), Field("int8", &SGolden::int8), Field("uint16", &SGolden::uint16),
                      Field("int16", &SGolden::int16), Field("uint32", &SGolden::uint32),
                      Field("int32", &SGolden::int32), Field("uint64", &SGolden::uint64),
                      Field("int64", &SGolden::int64), Field("floats", &SGolden::floats),
                      Field("doubles", &SGolden::doubles), Field("texts", &SGolden::texts),
                      Field("wideTexts", &SGolden::wideTexts), Field("dates", &SGolden::dates),
                      Field("blob", &SGolden::blob), Field("blobs", &SGolden::blobs), Field("keys", &SGolden::keys),
                      Field("deep", &SGolden::deep), Field("nothing", &SGolden::nothing));
    }

    SValues<bool> flags = {{true, false, true}};
    SValues<char> letters = {{'A', '~', '0'}};
    SValues<unsigned char> uint8 = Integers<unsigned char>();
    SValues<signed char> int8 = Integers<signed char>();
    SValues<std::uint16_t> uint16 = Integers<std::uint16_t>();
    SValues<std::int16_t> int16 = Integers<std::int16_t>();
    SValues<std::uint32_t> uint32 = Integers<std::uint32_t>();
    SValues<std::int32_t> int32 = Integers<std::int32_t>();
    SValues<std::uint64_t> uint64 = Integers<std::uint64_t>();
    SValues<std::int64_t> int64 = Integers<std::int64_t>();
    SValues<float> floats = Reals<float>();
    SValues<double> doubles = Reals<double>();
    SValues<std::string> texts = {{"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "a \"<&>\" \\ 100%\nline\tend", "", "Q"}};
    SValues<std::wstring> wideTexts = {
        {L"\u00E4\u20AC\U0001F600\U0010FFFF\uFFFD", L"x", L"", std::wstring(255, L'w') + L"\u4E2D", L"a\"<&>\"\\%"}};
    SValues<CbDateTime> dates;
    Blob blob;
    CBlobs blobs;
    std::map<std::string, std::map<std::string, std::int32_t>>
        keys; // in a record, each of them in the table of strings
    std::vector<std::vector<std::vector<std::map<std::string, bool>>>> deep = {{},
                                                                               {{}, {{{"a", true}}, {{"b", false}}}}};
    std::vector<SValues<std::uint16_t>> nothing = {{}, {{7}}};
};

SGolden MakeGolden(unsigned short firstYear, unsigned short lastYear, unsigned short lastMilliseconds)
{
    SGolden golden;
    CbDateTime first("2024-01-01T00:00:00"), last("2024-12-31T23:59:59");
    first.SetYear(firstYear);
    last.SetYear(lastYear);
    last.SetMilliseconds(lastMilliseconds);
    golden.dates = {{first, last, CbDateTime("2024-02-29T23:59:58")}};
    for (int i = 0; i < 300; ++i)
    {
        golden.blob.push_back(static_cast<unsigned char>(i * 7));
        golden.keys["k" + std::to_string(i)]["\xC3\xA4" + std::to_string(i % 200)] = i;
        golden.keys["many"]["m" + std::to_string(i)] = -i;
    }
    golden.blobs.blobs = {golden.blob, {0}, {0xFF, 0x00, 0x80}};
    return golden;
}

// Writes the document, compares it with the stored one, and reads that.
template <class Write, class Read>
void Check(const char* name, const SGolden& golden, const Write& write, const Read& read)
{
    const std::filesystem::path path = std::filesystem::path(VELLUM_GOLDEN) / name;
    const std::string written = write(golden);
    if (std::getenv("VELLUM_WRITE_GOLDEN") != nullptr)
        std::ofstream(path, std::ios::binary) << written;
    std::ifstream file(path, std::ios::binary);
    const std::string stored{std::istreambuf_iterator<char>(file), {}};
    EXPECT_TRUE(written == stored) << "written otherwise than " << path;
    EXPECT_TRUE(write(read(stored)) == stored) << "not the same again after " << path << " was read";
}

TEST(Golden, BinaryDocumentIsTheSameOnEverySystem)
{
    const auto write = [](const SGolden& golden)
    {
        const std::vector<unsigned char> bytes = Vellum::ToBinary(golden);
        return std::string(bytes.begin(), bytes.end());
    };
    const auto read = [](const std::string& document) {
        return Vellum::FromBinary<SGolden>(std::vector<unsigned char>(document.begin(), document.end()),
                                           Vellum::Strict);
    };
    Check("Golden.bin", MakeGolden(1601, 30827, 999), write, read);
}

TEST(Golden, TextDocumentsAreTheSameOnEverySystem)
{
    const SGolden golden = MakeGolden(0, 9999, 0);
    Check(
        "Golden.json", golden, [](const SGolden& each) { return Vellum::ToJson(each); },
        [](const std::string& document) { return Vellum::FromJson<SGolden>(document); });
    Check(
        "Golden.xml", golden, [](const SGolden& each) { return Vellum::ToXml(each); },
        [](const std::string& document) { return Vellum::FromXml<SGolden>(document); });
}

} // namespace
