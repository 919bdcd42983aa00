#pragma once

#include <algorithm>
#include <array>
#include <cereal/cereal.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Groundwork/CbDateTime.h"

#include "Vellum/Vellum.h"

// The objects that the text formats are measured with: small ones, of most kinds of value, in a long sequence. They are
// clients of Vellum and of cereal; what other libraries want stands in the benchmarks that measure them.
namespace Measured
{

using Blob = std::array<unsigned char, 32>;

struct SPoint final : Vellum::ISerializable
{
    std::int32_t id = 0;
    double weight = 0;
    std::string label;

    const char* GetTypeName() const override { return "Point"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("id", id);
        writer.Write("weight", weight);
        writer.Write("label", label);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("id", id);
        reader.Read("weight", weight);
        reader.Read("label", label);
    }

    template <class Archive>
    void serialize(Archive& archive)
    {
        archive(CEREAL_NVP(id), CEREAL_NVP(weight), CEREAL_NVP(label));
    }
};

// A sequence of objects, read until the reader has no more.
template <class Element>
struct SSequence final : Vellum::ISerializableContainer
{
    std::vector<Element> elements;

    const char* GetTypeName() const override { return "Sequence"; }
    void Write(Vellum::IContainerWriter& writer) const override
    {
        for (const Element& element : elements)
            writer.Write(element);
    }
    void Read(Vellum::IContainerReader& reader) override
    {
        elements.clear();
        elements.emplace_back();
        for (std::uint32_t index = 0; reader.Read(index, elements.back()); ++index)
            elements.emplace_back();
        elements.pop_back();
    }
};

struct SRecord final : Vellum::ISerializable
{
    std::int32_t number = 0;
    std::string name;
    std::string remark;
    double ratio = 0;
    double total = 0;
    CbDateTime date{std::uint64_t{0}};
    Blob blob{};
    SPoint origin;
    SSequence<SPoint> points;

    const char* GetTypeName() const override { return "Record"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("number", number);
        writer.Write("name", name);
        writer.Write("remark", remark);
        writer.Write("ratio", ratio);
        writer.Write("total", total);
        writer.Write("date", date);
        writer.Write("blob", blob.size(), blob.data());
        writer.Write("origin", origin);
        writer.Write("points", points);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("number", number);
        reader.Read("name", name);
        reader.Read("remark", remark);
        reader.Read("ratio", ratio);
        reader.Read("total", total);
        reader.Read("date", date);
        const Vellum::BlobRange range = reader.GetBlob("blob");
        if (range.second - range.first == static_cast<std::ptrdiff_t>(blob.size()))
            std::copy(range.first, range.second, blob.begin());
        reader.Read("origin", origin);
        reader.Read("points", points);
    }

    std::string GetDateText() const { return date.ToString("Y-m-dTH:i:s", false); }

    template <class Archive>
    void save(Archive& archive) const
    {
        archive(CEREAL_NVP(number), CEREAL_NVP(name), CEREAL_NVP(remark), CEREAL_NVP(ratio), CEREAL_NVP(total),
                cereal::make_nvp("date", GetDateText()));
        archive.saveBinaryValue(blob.data(), blob.size(), "blob");
        archive(CEREAL_NVP(origin), cereal::make_nvp("points", points.elements));
    }
    template <class Archive>
    void load(Archive& archive)
    {
        std::string dateText;
        archive(CEREAL_NVP(number), CEREAL_NVP(name), CEREAL_NVP(remark), CEREAL_NVP(ratio), CEREAL_NVP(total),
                cereal::make_nvp("date", dateText));
        date = dateText.c_str();
        archive.loadBinaryValue(blob.data(), blob.size(), "blob");
        archive(CEREAL_NVP(origin), cereal::make_nvp("points", points.elements));
    }
};

using Records = SSequence<SRecord>;

inline SPoint MakePoint(std::uint32_t index)
{
    SPoint point;
    point.id = static_cast<std::int32_t>(index * 7919);
    point.weight = index / 8.0;
    point.label = "point " + std::to_string(index);
    return point;
}

inline Records MakeRecords(std::uint32_t count)
{
    Records records;
    records.elements.resize(count);
    for (std::uint32_t index = 0; index < count; ++index)
    {
        SRecord& record = records.elements[index];
        record.number = static_cast<std::int32_t>(index);
        record.name = "record number " + std::to_string(index);
        record.remark = "A sentence of some length, with \"quotes\" and an \xC3\xA9, as people write it.";
        record.ratio = 1.0 / (index + 1);
        record.total = index * 1234.5678;
        record.date = CbDateTime("2024-03-07T09:05:01");
        record.blob.fill(static_cast<unsigned char>(index));
        record.origin = MakePoint(index);
        for (std::uint32_t point = 1; point <= 3; ++point)
            record.points.elements.push_back(MakePoint(index + point));
    }
    return records;
}

// Whether the records of a document have been read.
inline bool HasRecords(const Records& records, std::uint32_t count)
{
    return records.elements.size() == count && records.elements.back().points.elements.size() == 3 &&
           records.elements.back().blob[0] == static_cast<unsigned char>(count - 1) &&
           records.elements.back().points.elements[2].label == "point " + std::to_string(count + 2);
}

inline void Report(benchmark::State& state, const std::string& document)
{
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["document"] = benchmark::Counter(static_cast<double>(document.size()), benchmark::Counter::kDefaults,
                                                    benchmark::Counter::kIs1024);
}

} // namespace Measured
