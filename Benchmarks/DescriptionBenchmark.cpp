// What a description costs beside the same class written by hand: documents of a shop (records of many kinds), of a
// track (many small objects) and of a sensor (numbers), out and in, in each format. Scripts/BenchmarkDescriptions.sh
// prints the ratios.

#include <sstream>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>

#include "Descriptions/Described.h"
#include "Descriptions/Handwritten.h"

namespace
{

template <class Track>
Track MakeTrack()
{
    Track track;
    track.title = "A track";
    for (std::int32_t at = 0; at < 5000; ++at)
    {
        auto& point = track.points.emplace_back();
        point.x = at;
        point.y = at * at % 1000;
    }
    return track;
}

template <class Sensor>
Sensor MakeSensor()
{
    Sensor sensor;
    sensor.name = "A sensor";
    for (int at = 0; at < 10000; ++at)
        sensor.values.push_back(at / 7.0);
    return sensor;
}

template <class Shop>
Shop MakeShop()
{
    Shop shop;
    shop.name = "A shop";
    for (std::uint32_t number = 0; number < 500; ++number)
    {
        auto& order = shop.orders.emplace_back();
        order.id = number;
        order.buyer.id = number % 100;
        order.buyer.name = "Buyer " + std::to_string(number);
        if (number % 2 == 0)
            order.buyer.email = "buyer@example.org";
        order.buyer.address.street = "Some Street " + std::to_string(number);
        order.buyer.address.city = "Some City";
        for (std::uint16_t line = 0; line < 5; ++line)
        {
            auto& item = order.lines.emplace_back();
            item.article = "An article with a name";
            item.count = line;
            item.price = line * 1.25;
        }
        order.taxes.emplace_back().rate = 0.19f;
        order.isPaid = number % 3 == 0;
    }
    for (const char* key : {"language", "currency", "colour"})
        shop.settings.entries[key] = "a value";
    return shop;
}

// One way of having classes: how an object becomes a document, and how a new one is filled.
struct SHandwritten
{
    using Shop = Handwritten::SShop;
    using Track = Handwritten::STrack;
    using Sensor = Handwritten::SSensor;

    static CbStreamWriteBinaryBuffer ToBinary(const Vellum::ISerializable& object)
    {
        CbStreamWriteBinaryBuffer stream;
        Vellum::CWriterBinary(stream).Write(object);
        return stream;
    }
    template <class Writer>
    static std::string ToText(const Vellum::ISerializable& object)
    {
        std::ostringstream stream;
        Writer(stream).Write(object);
        return std::move(stream).str();
    }
    static std::string ToJson(const Vellum::ISerializable& object) { return ToText<Vellum::CWriterJson>(object); }
    static std::string ToXml(const Vellum::ISerializable& object) { return ToText<Vellum::CWriterXml>(object); }

    template <class Object>
    static Object FromBinary(const std::string& document)
    {
        Object object;
        CbStreamReadBinaryBuffer stream(document.data(), document.size());
        Vellum::CReaderBinary(stream).Read(object);
        return object;
    }
    template <class Object>
    static Object FromJson(const std::string& document)
    {
        Object object;
        Vellum::CReaderJson(document).Read(object);
        return object;
    }
    template <class Object>
    static Object FromXml(const std::string& document)
    {
        Object object;
        Vellum::CReaderXml(document).Read(object);
        return object;
    }
};

struct SDescribed
{
    using Shop = Described::SShop;
    using Track = Described::STrack;
    using Sensor = Described::SSensor;

    static auto ToBinary(const auto& object) { return Vellum::ToBinary(object); }
    static auto ToJson(const auto& object) { return Vellum::ToJson(object); }
    static auto ToXml(const auto& object) { return Vellum::ToXml(object); }
    template <class Object>
    static auto FromBinary(const std::string& document)
    {
        return Vellum::FromBinary<Object>(document);
    }
    template <class Object>
    static auto FromJson(const std::string& document)
    {
        return Vellum::FromJson<Object>(document);
    }
    template <class Object>
    static auto FromXml(const std::string& document)
    {
        return Vellum::FromXml<Object>(document);
    }
};

struct SBinary
{
    static constexpr const char* Name = "Binary";
    template <class Way>
    static auto Write(const auto& object)
    {
        return Way::ToBinary(object);
    }
    template <class Way, class Object>
    static auto Read(const std::string& document)
    {
        return Way::template FromBinary<Object>(document);
    }
    static std::string ToDocument(const CbStreamWriteBinaryBuffer& stream)
    {
        return {reinterpret_cast<const char*>(stream.GetData()), stream.GetSize()};
    }
    static std::string ToDocument(const std::vector<unsigned char>& bytes) { return {bytes.begin(), bytes.end()}; }
};

struct SJson
{
    static constexpr const char* Name = "Json";
    template <class Way>
    static auto Write(const auto& object)
    {
        return Way::ToJson(object);
    }
    template <class Way, class Object>
    static auto Read(const std::string& document)
    {
        return Way::template FromJson<Object>(document);
    }
    static std::string ToDocument(const std::string& document) { return document; }
};

struct SXml
{
    static constexpr const char* Name = "Xml";
    template <class Way>
    static auto Write(const auto& object)
    {
        return Way::ToXml(object);
    }
    template <class Way, class Object>
    static auto Read(const std::string& document)
    {
        return Way::template FromXml<Object>(document);
    }
    static std::string ToDocument(const std::string& document) { return document; }
};

template <class Way, class Format, class Object>
void Register(const std::string& lane, const char* way, const Object& object)
{
    benchmark::RegisterBenchmark(("Write" + lane + way).c_str(),
                                 [object](benchmark::State& state)
                                 {
                                     for (auto _ : state)
                                         benchmark::DoNotOptimize(Format::template Write<Way>(object));
                                 });
    const std::string document = Format::ToDocument(Format::template Write<Way>(object));
    benchmark::RegisterBenchmark(("Read" + lane + way).c_str(),
                                 [document](benchmark::State& state)
                                 {
                                     for (auto _ : state)
                                         benchmark::DoNotOptimize(Format::template Read<Way, Object>(document));
                                 });
}

// A ratio of two costs says something only if both do the same.
template <class Format>
void RegisterBoth(const char* name, const auto& handwritten, const auto& described)
{
    const auto bytes = Format::ToDocument(Format::template Write<SHandwritten>(handwritten));
    if (bytes != Format::ToDocument(Format::template Write<SDescribed>(described)))
        throw std::logic_error(std::string(Format::Name) + " documents of " + name + " differ");
    const std::string lane = std::string("/") + Format::Name + "/" + name + "/";
    Register<SHandwritten, Format>(lane, "Handwritten", handwritten);
    Register<SDescribed, Format>(lane, "Described", described);
}

template <class Format>
void RegisterAll()
{
    RegisterBoth<Format>("Shop", MakeShop<SHandwritten::Shop>(), MakeShop<SDescribed::Shop>());
    RegisterBoth<Format>("Track", MakeTrack<SHandwritten::Track>(), MakeTrack<SDescribed::Track>());
    RegisterBoth<Format>("Sensor", MakeSensor<SHandwritten::Sensor>(), MakeSensor<SDescribed::Sensor>());
}

} // namespace

int main(int argc, char** argv)
{
    RegisterAll<SBinary>();
    RegisterAll<SJson>();
    RegisterAll<SXml>();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
