#pragma once

#include <cstdint>
#include <Describe/Describe.h>
#include <map>
#include <optional>
#include <string>
#include <vector>

// The same ten classes, described.
namespace Described
{

struct SPoint
{
    std::int32_t x = 0;
    std::int32_t y = 0;

    static constexpr auto Describe()
    {
        return Vellum::Fields("Point", Vellum::Field("x", &SPoint::x), Vellum::Field("y", &SPoint::y));
    }
};

struct SAddress
{
    std::string street;
    std::string city;
    std::string zip;

    static constexpr auto Describe()
    {
        return Vellum::Fields("Address", Vellum::Field("street", &SAddress::street),
                              Vellum::Field("city", &SAddress::city), Vellum::Field("zip", &SAddress::zip));
    }
};

struct SBuyer
{
    std::uint32_t id = 0;
    std::string name;
    std::optional<std::string> email;
    SAddress address;

    static constexpr auto Describe()
    {
        return Vellum::Fields("Buyer", Vellum::Field("id", &SBuyer::id), Vellum::Field("name", &SBuyer::name),
                              Vellum::Field("email", &SBuyer::email), Vellum::Field("address", &SBuyer::address));
    }
};

struct SLine
{
    std::string article;
    std::uint16_t count = 0;
    double price = 0;
    std::optional<std::string> note;

    static constexpr auto Describe()
    {
        return Vellum::Fields("Line", Vellum::Field("article", &SLine::article), Vellum::Field("count", &SLine::count),
                              Vellum::Field("price", &SLine::price), Vellum::Field("note", &SLine::note));
    }
};

struct STax
{
    std::string name;
    float rate = 0;

    static constexpr auto Describe()
    {
        return Vellum::Fields("Tax", Vellum::Field("name", &STax::name), Vellum::Field("rate", &STax::rate));
    }
};

struct SOrder
{
    std::uint64_t id = 0;
    SBuyer buyer;
    std::vector<SLine> lines;
    std::vector<STax> taxes;
    bool isPaid = false;

    static constexpr auto Describe()
    {
        return Vellum::Fields("Order", Vellum::Field("id", &SOrder::id), Vellum::Field("buyer", &SOrder::buyer),
                              Vellum::Field("lines", &SOrder::lines), Vellum::Field("taxes", &SOrder::taxes),
                              Vellum::Field("isPaid", &SOrder::isPaid));
    }
};

struct SSensor
{
    std::string name;
    std::vector<double> values;

    static constexpr auto Describe()
    {
        return Vellum::Fields("Sensor", Vellum::Field("name", &SSensor::name),
                              Vellum::Field("values", &SSensor::values));
    }
};

struct STrack
{
    std::string title;
    std::vector<SPoint> points;

    static constexpr auto Describe()
    {
        return Vellum::Fields("Track", Vellum::Field("title", &STrack::title),
                              Vellum::Field("points", &STrack::points));
    }
};

struct SSettings
{
    std::map<std::string, std::string> entries;
    bool isVisible = false;
    std::int16_t level = 0;

    static constexpr auto Describe()
    {
        return Vellum::Fields("Settings", Vellum::Field("entries", &SSettings::entries),
                              Vellum::Field("isVisible", &SSettings::isVisible),
                              Vellum::Field("level", &SSettings::level));
    }
};

struct SShop
{
    std::string name;
    std::vector<SOrder> orders;
    std::vector<SSensor> sensors;
    std::vector<STrack> tracks;
    SSettings settings;

    static constexpr auto Describe()
    {
        return Vellum::Fields("Shop", Vellum::Field("name", &SShop::name), Vellum::Field("orders", &SShop::orders),
                              Vellum::Field("sensors", &SShop::sensors), Vellum::Field("tracks", &SShop::tracks),
                              Vellum::Field("settings", &SShop::settings));
    }
};

} // namespace Described
