// XML against the XML archives of two widely used libraries: a sequence of small objects, from the client's objects to
// a document in memory and back. They share the objects and the text of dates; the archives write the blob as text too,
// cereal by itself and Boost through Base64. Beside that the parse alone, against pugixml, and the look-up of fields in
// elements with few and with many children.
//
//   VellumBenchmarks --benchmark_filter=Xml

#include <boost/archive/xml_iarchive.hpp>
#include <boost/archive/xml_oarchive.hpp>
#include <boost/serialization/nvp.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/vector.hpp>
#include <cereal/archives/xml.hpp>
#include <pugixml.hpp>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "Vellum/Vellum.h"

#include "Support/Records.h"

namespace boost::serialization
{

template <class Archive>
void serialize(Archive& archive, Measured::SPoint& point, unsigned)
{
    archive& make_nvp("id", point.id);
    archive& make_nvp("weight", point.weight);
    archive& make_nvp("label", point.label);
}

template <class Archive>
void serialize(Archive& archive, Measured::SRecord& record, unsigned)
{
    std::string date;
    std::string blob;
    if constexpr (Archive::is_saving::value)
    {
        date = record.GetDateText();
        blob = Vellum::Base64::Encode(record.blob.data(), record.blob.size(), false);
    }
    archive& make_nvp("number", record.number);
    archive& make_nvp("name", record.name);
    archive& make_nvp("remark", record.remark);
    archive& make_nvp("ratio", record.ratio);
    archive& make_nvp("total", record.total);
    archive& make_nvp("date", date);
    archive& make_nvp("blob", blob);
    archive& make_nvp("origin", record.origin);
    archive& make_nvp("points", record.points.elements);
    if constexpr (Archive::is_loading::value)
    {
        record.date = date.c_str();
        Vellum::Base64::Decode(blob.c_str(), record.blob.data(), record.blob.size());
    }
}

} // namespace boost::serialization

namespace
{

using namespace Measured;

struct SVellum
{
    static std::string Write(const Records& records)
    {
        std::ostringstream stream;
        Vellum::CWriterXml(stream).Write(records);
        return std::move(stream).str();
    }
    static void Read(const std::string& document, Records& records) { Vellum::CReaderXml(document).Read(records); }
};

struct SCereal
{
    static std::string Write(const Records& records)
    {
        std::ostringstream stream;
        {
            cereal::XMLOutputArchive archive(stream);
            archive(cereal::make_nvp("records", records.elements));
        }
        return std::move(stream).str();
    }
    static void Read(const std::string& document, Records& records)
    {
        std::istringstream stream(document);
        cereal::XMLInputArchive archive(stream);
        archive(cereal::make_nvp("records", records.elements));
    }
};

struct SBoost
{
    static std::string Write(const Records& records)
    {
        std::ostringstream stream;
        {
            boost::archive::xml_oarchive archive(stream);
            archive << boost::serialization::make_nvp("records", records.elements);
        }
        return std::move(stream).str();
    }
    static void Read(const std::string& document, Records& records)
    {
        std::istringstream stream(document);
        boost::archive::xml_iarchive archive(stream);
        archive >> boost::serialization::make_nvp("records", records.elements);
    }
};

template <class Library>
void XmlWrite(benchmark::State& state)
{
    const Records records = MakeRecords(static_cast<std::uint32_t>(state.range(0)));
    std::string document;
    for (auto iteration : state)
        benchmark::DoNotOptimize(document = Library::Write(records));
    Report(state, document);
}

template <class Library>
void XmlRead(benchmark::State& state)
{
    const auto count = static_cast<std::uint32_t>(state.range(0));
    const std::string document = Library::Write(MakeRecords(count));
    for (auto iteration : state)
    {
        Records records;
        Library::Read(document, records);
        if (!HasRecords(records, count))
            state.SkipWithError("the document doesn't give its records back");
    }
    Report(state, document);
}

void XmlParseVellum(benchmark::State& state)
{
    const std::string document = SVellum::Write(MakeRecords(static_cast<std::uint32_t>(state.range(0))));
    const Vellum::CReaderXml reader(document);
    for (auto iteration : state)
        benchmark::DoNotOptimize(reader.Check());
    Report(state, document);
}

void XmlParsePugixml(benchmark::State& state)
{
    const std::string document = SVellum::Write(MakeRecords(static_cast<std::uint32_t>(state.range(0))));
    for (auto iteration : state)
    {
        pugi::xml_document tree;
        benchmark::DoNotOptimize(tree.load_string(document.c_str()));
    }
    Report(state, document);
}

// An object of so many whole numbers, each asked for by its key. The items are fields.
class CManyFields final : public Vellum::ISerializable
{
public:
    explicit CManyFields(std::size_t count)
    {
        for (std::size_t index = 0; index < count; ++index)
            keys.push_back("field" + std::to_string(index));
    }

    const char* GetTypeName() const override { return "ManyFields"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        for (const std::string& key : keys)
            writer.Write(key.c_str(), 12345);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        int value = 0;
        for (const std::string& key : keys)
            if (!reader.Read(key.c_str(), value))
                missing = true;
    }

    bool missing = false;

private:
    std::vector<std::string> keys;
};

void XmlFields(benchmark::State& state)
{
    CManyFields fields(static_cast<std::size_t>(state.range(0)));
    std::ostringstream stream;
    Vellum::CWriterXml(stream).Write(fields);
    const std::string document = stream.str();
    for (auto iteration : state)
        Vellum::CReaderXml(document).Read(fields);
    if (fields.missing)
        state.SkipWithError("a field isn't found");
    Report(state, document);
}

BENCHMARK_TEMPLATE(XmlWrite, SVellum)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(XmlWrite, SCereal)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(XmlWrite, SBoost)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(XmlRead, SVellum)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(XmlRead, SCereal)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(XmlRead, SBoost)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(XmlParseVellum)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(XmlParsePugixml)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(XmlFields)->Arg(20)->Arg(2000)->Unit(benchmark::kMicrosecond);

} // namespace
