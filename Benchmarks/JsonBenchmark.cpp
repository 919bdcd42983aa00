// JSON against two widely used libraries: a sequence of small objects, from the client's objects to a document in
// memory and back. The three share everything that isn't JSON: the objects, the text of dates, and for nlohmann's
// library, which has no form for bytes, Base64. Each writes in the layout that is its default.
//
//   VellumBenchmarks --benchmark_filter=Json

#include <cereal/archives/json.hpp>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>

#include "Vellum/Vellum.h"

#include "Support/Records.h"

namespace
{

using namespace Measured;

nlohmann::json ToJson(const SPoint& point)
{
    return {{"id", point.id}, {"weight", point.weight}, {"label", point.label}};
}

void FromJson(const nlohmann::json& json, SPoint& point)
{
    json.at("id").get_to(point.id);
    json.at("weight").get_to(point.weight);
    json.at("label").get_to(point.label);
}

nlohmann::json ToJson(const SRecord& record)
{
    nlohmann::json sequence = nlohmann::json::array();
    for (const SPoint& point : record.points.elements)
        sequence.push_back(ToJson(point));
    return {{"number", record.number},
            {"name", record.name},
            {"remark", record.remark},
            {"ratio", record.ratio},
            {"total", record.total},
            {"date", record.GetDateText()},
            {"blob", Vellum::Base64::Encode(record.blob.data(), record.blob.size(), false)},
            {"origin", ToJson(record.origin)},
            {"points", std::move(sequence)}};
}

void FromJson(const nlohmann::json& json, SRecord& record)
{
    json.at("number").get_to(record.number);
    json.at("name").get_to(record.name);
    json.at("remark").get_to(record.remark);
    json.at("ratio").get_to(record.ratio);
    json.at("total").get_to(record.total);
    record.date = json.at("date").get_ref<const std::string&>().c_str();
    const std::string& blob = json.at("blob").get_ref<const std::string&>();
    Vellum::Base64::Decode(blob.c_str(), record.blob.data(), record.blob.size());
    FromJson(json.at("origin"), record.origin);
    record.points.elements.clear();
    for (const nlohmann::json& point : json.at("points"))
        FromJson(point, record.points.elements.emplace_back());
}

struct SVellum
{
    static std::string Write(const Records& records)
    {
        std::ostringstream stream;
        Vellum::CWriterJson(stream).Write(records);
        return std::move(stream).str();
    }
    static void Read(const std::string& document, Records& records) { Vellum::CReaderJson(document).Read(records); }
};

struct SCereal
{
    static std::string Write(const Records& records)
    {
        std::ostringstream stream;
        {
            cereal::JSONOutputArchive archive(stream);
            archive(cereal::make_nvp("records", records.elements));
        }
        return std::move(stream).str();
    }
    static void Read(const std::string& document, Records& records)
    {
        std::istringstream stream(document);
        cereal::JSONInputArchive archive(stream);
        archive(cereal::make_nvp("records", records.elements));
    }
};

struct SNlohmann
{
    static std::string Write(const Records& records)
    {
        nlohmann::json json = nlohmann::json::array();
        for (const SRecord& record : records.elements)
            json.push_back(ToJson(record));
        return json.dump();
    }
    static void Read(const std::string& document, Records& records)
    {
        records.elements.clear();
        const nlohmann::json json = nlohmann::json::parse(document);
        for (const nlohmann::json& record : json)
            FromJson(record, records.elements.emplace_back());
    }
};

template <class Library>
void JsonWrite(benchmark::State& state)
{
    const Records records = MakeRecords(static_cast<std::uint32_t>(state.range(0)));
    std::string document;
    for (auto iteration : state)
        benchmark::DoNotOptimize(document = Library::Write(records));
    Report(state, document);
}

template <class Library>
void JsonRead(benchmark::State& state)
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

BENCHMARK_TEMPLATE(JsonWrite, SVellum)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(JsonWrite, SCereal)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(JsonWrite, SNlohmann)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(JsonRead, SVellum)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(JsonRead, SCereal)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(JsonRead, SNlohmann)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

} // namespace
