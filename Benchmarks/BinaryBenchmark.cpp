#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbStreamReadBinaryBuffer.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"

#include "Vellum/CReaderBinary.h"
#include "Vellum/CWriterBinary.h"
#include "Vellum/IContainerReader.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataReader.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Support/PeakMemory.h"

// Time and peak of the heap for binary documents: very many small objects, very many numbers in nested objects, and
// one long sequence. "PeakMB" is what the heap grew by at most during one run, the client's objects that a reader fills
// among it; "DocumentMB" the size of the document.

namespace
{

// A sequence of client objects; elements are made as they are read.
template <class Item>
class CItems : public Vellum::ISerializableContainer
{
public:
    std::vector<Item> items;

    const char* GetTypeName() const override { return "Items"; }
    void Write(Vellum::IContainerWriter& writer) const override
    {
        for (const Item& item : items)
            writer.Write(item);
    }
    void Read(Vellum::IContainerReader& reader) override
    {
        for (std::uint32_t index = 0;; ++index)
        {
            Item item;
            if (!reader.Read(index, item))
                return;
            items.push_back(std::move(item));
        }
    }
};

// An object of three fields.
class CPoint : public Vellum::ISerializable
{
public:
    int x = 1;
    int y = 2;
    int z = 3;

    const char* GetTypeName() const override { return "Point"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("x", x);
        writer.Write("y", y);
        writer.Write("z", z);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("x", x);
        reader.Read("y", y);
        reader.Read("z", z);
    }
};

// An object of nine fields of nine kinds, a nested object and a sequence of three.
class CRow : public Vellum::ISerializable
{
public:
    bool flag = true;
    int number = 12345;
    std::uint64_t size = 1234567890123;
    float ratio = 0.25f;
    double value = 1.5;
    std::string name = "a name";
    std::wstring title = L"title";
    CbDateTime date = CbDateTime(std::uint64_t{133538304000000000});
    std::vector<unsigned char> blob = std::vector<unsigned char>(8, 0x5A);
    CPoint origin;
    CItems<CPoint> points;

    const char* GetTypeName() const override { return "Row"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("flag", flag);
        writer.Write("number", number);
        writer.Write("size", size);
        writer.Write("ratio", ratio);
        writer.Write("value", value);
        writer.Write("name", name);
        writer.Write("title", title);
        writer.Write("date", static_cast<const IDateTime&>(date));
        writer.Write("blob", blob.size(), blob.data());
        writer.Write("origin", origin);
        writer.Write("points", points);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("flag", flag);
        reader.Read("number", number);
        reader.Read("size", size);
        reader.Read("ratio", ratio);
        reader.Read("value", value);
        reader.Read("name", name);
        reader.Read("title", title);
        reader.Read("date", static_cast<IDateTime&>(date));
        const Vellum::BlobRange range = reader.GetBlob("blob");
        blob.assign(range.first, range.second);
        reader.Read("origin", origin);
        reader.Read("points", points);
    }
};

// An object of a hundred int32 fields.
class CWide : public Vellum::ISerializable
{
public:
    static constexpr int FieldCount = 100;
    std::vector<int> fields = std::vector<int>(FieldCount, 7);

    const char* GetTypeName() const override { return "Wide"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        for (int i = 0; i < FieldCount; ++i)
            writer.Write(GetKeys()[static_cast<std::size_t>(i)].c_str(), fields[static_cast<std::size_t>(i)]);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        for (int i = 0; i < FieldCount; ++i)
            reader.Read(GetKeys()[static_cast<std::size_t>(i)].c_str(), fields[static_cast<std::size_t>(i)]);
    }

private:
    static const std::vector<std::string>& GetKeys()
    {
        static const std::vector<std::string> keys = []
        {
            std::vector<std::string> made;
            for (int i = 0; i < FieldCount; ++i)
                made.push_back("field" + std::to_string(i));
            return made;
        }();
        return keys;
    }
};

// Nested objects as fields of one root: a live writer for each until the document is emitted.
class CNest : public Vellum::ISerializable
{
public:
    std::vector<CWide> objects;

    explicit CNest(std::size_t count) : objects(count), keys(count)
    {
        for (std::size_t i = 0; i < count; ++i)
            keys[i] = "object" + std::to_string(i);
    }

    const char* GetTypeName() const override { return "Nest"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        for (std::size_t i = 0; i < objects.size(); ++i)
            writer.Write(keys[i].c_str(), objects[i]);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        for (std::size_t i = 0; i < objects.size(); ++i)
            reader.Read(keys[i].c_str(), objects[i]);
    }

private:
    std::vector<std::string> keys;
};

class CDoubles : public Vellum::ISerializableContainer
{
public:
    std::vector<double> values;

    const char* GetTypeName() const override { return "Doubles"; }
    void Write(Vellum::IContainerWriter& writer) const override
    {
        for (const double value : values)
            writer.Write(value);
    }
    void Read(Vellum::IContainerReader& reader) override
    {
        double value = 0;
        for (std::uint32_t index = 0; reader.Read(index, value); ++index)
            values.push_back(value);
    }
};

CItems<CRow> MakeRows(std::int64_t count)
{
    CItems<CRow> rows;
    rows.items.resize(static_cast<std::size_t>(count));
    for (CRow& row : rows.items)
        row.points.items.resize(3);
    return rows;
}

constexpr double Megabyte = 1 << 20;

void Write(benchmark::State& state, const auto& root, std::int64_t items)
{
    double peak = 0;
    double size = 0;
    for (auto _ : state)
    {
        const std::int64_t before = Support::GetLiveMemory();
        Support::ResetPeakMemory();
        CbStreamWriteBinaryBuffer stream;
        Vellum::CWriterBinary(stream).Write(root);
        benchmark::DoNotOptimize(stream.GetData());
        peak = static_cast<double>(Support::GetPeakMemory() - before);
        size = stream.GetSize();
    }
    state.SetItemsProcessed(state.iterations() * items);
    state.counters["PeakMB"] = peak / Megabyte;
    state.counters["DocumentMB"] = size / Megabyte;
}

void Read(benchmark::State& state, const auto& root, const auto& makeEmpty, std::int64_t items)
{
    CbStreamWriteBinaryBuffer document;
    Vellum::CWriterBinary(document).Write(root);
    double peak = 0;
    for (auto _ : state)
    {
        const std::int64_t before = Support::GetLiveMemory();
        Support::ResetPeakMemory();
        CbStreamReadBinaryBuffer stream(document.GetData(), document.GetSize());
        auto copy = makeEmpty();
        const Vellum::CReaderBinary reader(stream);
        reader.Read(copy);
        benchmark::DoNotOptimize(&copy);
        peak = static_cast<double>(Support::GetPeakMemory() - before);
    }
    state.SetItemsProcessed(state.iterations() * items);
    state.counters["PeakMB"] = peak / Megabyte;
    state.counters["DocumentMB"] = document.GetSize() / Megabyte;
}

void BinaryWriteRows(benchmark::State& state) { Write(state, MakeRows(state.range(0)), state.range(0)); }
void BinaryReadRows(benchmark::State& state)
{
    Read(
        state, MakeRows(state.range(0)), [] { return CItems<CRow>(); }, state.range(0));
}
BENCHMARK(BinaryWriteRows)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BinaryReadRows)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

// A million int32 fields in ten thousand nested objects.
void BinaryWriteNestedFields(benchmark::State& state) { Write(state, CNest(10000), 1000000); }
void BinaryReadNestedFields(benchmark::State& state)
{
    Read(
        state, CNest(10000), [] { return CNest(10000); }, 1000000);
}
BENCHMARK(BinaryWriteNestedFields)->Unit(benchmark::kMillisecond);
BENCHMARK(BinaryReadNestedFields)->Unit(benchmark::kMillisecond);

void BinaryWriteDoubles(benchmark::State& state)
{
    CDoubles doubles;
    doubles.values.assign(1000000, 1.25);
    Write(state, doubles, 1000000);
}
void BinaryReadDoubles(benchmark::State& state)
{
    CDoubles doubles;
    doubles.values.assign(1000000, 1.25);
    Read(
        state, doubles, [] { return CDoubles(); }, 1000000);
}
BENCHMARK(BinaryWriteDoubles)->Unit(benchmark::kMillisecond);
BENCHMARK(BinaryReadDoubles)->Unit(benchmark::kMillisecond);

} // namespace
