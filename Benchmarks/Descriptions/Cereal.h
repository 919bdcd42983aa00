#pragma once

#include <cereal/types/map.hpp>
#include <cereal/types/optional.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

// The same ten classes as clients of cereal.
namespace Cereal
{

struct SPoint
{
    std::int32_t x = 0;
    std::int32_t y = 0;

    template <class Archive>
    void serialize(Archive& archive)
    {
        archive(CEREAL_NVP(x), CEREAL_NVP(y));
    }
};

struct SAddress
{
    std::string street;
    std::string city;
    std::string zip;

    template <class Archive>
    void serialize(Archive& archive)
    {
        archive(CEREAL_NVP(street), CEREAL_NVP(city), CEREAL_NVP(zip));
    }
};

struct SBuyer
{
    std::uint32_t id = 0;
    std::string name;
    std::optional<std::string> email;
    SAddress address;

    template <class Archive>
    void serialize(Archive& archive)
    {
        archive(CEREAL_NVP(id), CEREAL_NVP(name), CEREAL_NVP(email), CEREAL_NVP(address));
    }
};

struct SLine
{
    std::string article;
    std::uint16_t count = 0;
    double price = 0;
    std::optional<std::string> note;

    template <class Archive>
    void serialize(Archive& archive)
    {
        archive(CEREAL_NVP(article), CEREAL_NVP(count), CEREAL_NVP(price), CEREAL_NVP(note));
    }
};

struct STax
{
    std::string name;
    float rate = 0;

    template <class Archive>
    void serialize(Archive& archive)
    {
        archive(CEREAL_NVP(name), CEREAL_NVP(rate));
    }
};

struct SOrder
{
    std::uint64_t id = 0;
    SBuyer buyer;
    std::vector<SLine> lines;
    std::vector<STax> taxes;
    bool isPaid = false;

    template <class Archive>
    void serialize(Archive& archive)
    {
        archive(CEREAL_NVP(id), CEREAL_NVP(buyer), CEREAL_NVP(lines), CEREAL_NVP(taxes), CEREAL_NVP(isPaid));
    }
};

struct SSensor
{
    std::string name;
    std::vector<double> values;

    template <class Archive>
    void serialize(Archive& archive)
    {
        archive(CEREAL_NVP(name), CEREAL_NVP(values));
    }
};

struct STrack
{
    std::string title;
    std::vector<SPoint> points;

    template <class Archive>
    void serialize(Archive& archive)
    {
        archive(CEREAL_NVP(title), CEREAL_NVP(points));
    }
};

struct SSettings
{
    std::map<std::string, std::string> entries;
    bool isVisible = false;
    std::int16_t level = 0;

    template <class Archive>
    void serialize(Archive& archive)
    {
        archive(CEREAL_NVP(entries), CEREAL_NVP(isVisible), CEREAL_NVP(level));
    }
};

struct SShop
{
    std::string name;
    std::vector<SOrder> orders;
    std::vector<SSensor> sensors;
    std::vector<STrack> tracks;
    SSettings settings;

    template <class Archive>
    void serialize(Archive& archive)
    {
        archive(CEREAL_NVP(name), CEREAL_NVP(orders), CEREAL_NVP(sensors), CEREAL_NVP(tracks), CEREAL_NVP(settings));
    }
};

} // namespace Cereal
