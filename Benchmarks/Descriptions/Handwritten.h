#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>
#include <Vellum/Vellum.h>

// Ten classes, written by hand on the contract, with what such classes bring along for sequences, maps and values that
// may be absent.
namespace Handwritten
{

inline void WriteItem(Vellum::IDataWriter& writer, const char* key, const std::optional<std::string>& value)
{
    if (value)
        writer.Write(key, *value);
}

inline void ReadItem(Vellum::IDataReader& reader, const char* key, std::optional<std::string>& value)
{
    if (!reader.Read(key, value.emplace()))
        value.reset();
}

template <class Element>
struct SList final : std::vector<Element>, Vellum::ISerializableContainer
{
    const char* GetTypeName() const override { return "sequence"; }
    void Write(Vellum::IContainerWriter& writer) const override
    {
        for (const Element& element : *this)
            writer.Write(element);
    }
    void Read(Vellum::IContainerReader& reader) override
    {
        this->clear();
        for (std::uint32_t index = 0; reader.Read(index, this->emplace_back()); ++index)
            ;
        this->pop_back();
    }
};

struct SMap final : std::map<std::string, std::string>, Vellum::ISerializable
{
    const char* GetTypeName() const override { return "map"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        for (const auto& [key, value] : *this)
            writer.Write(key.c_str(), value);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        clear();
        for (std::uint32_t index = 0; index < reader.GetKeyCount(); ++index)
            reader.Read(reader.GetKey(index), (*this)[reader.GetKey(index)]);
    }
};

struct SPoint final : Vellum::ISerializable
{
    const char* GetTypeName() const override { return "Point"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("x", x);
        writer.Write("y", y);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("x", x);
        reader.Read("y", y);
    }

    std::int32_t x = 0;
    std::int32_t y = 0;
};

struct SAddress final : Vellum::ISerializable
{
    const char* GetTypeName() const override { return "Address"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("street", street);
        writer.Write("city", city);
        writer.Write("zip", zip);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("street", street);
        reader.Read("city", city);
        reader.Read("zip", zip);
    }

    std::string street;
    std::string city;
    std::string zip;
};

struct SBuyer final : Vellum::ISerializable
{
    const char* GetTypeName() const override { return "Buyer"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("id", id);
        writer.Write("name", name);
        WriteItem(writer, "email", email);
        writer.Write("address", address);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("id", id);
        reader.Read("name", name);
        ReadItem(reader, "email", email);
        reader.Read("address", address);
    }

    std::uint32_t id = 0;
    std::string name;
    std::optional<std::string> email;
    SAddress address;
};

struct SLine final : Vellum::ISerializable
{
    const char* GetTypeName() const override { return "Line"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("article", article);
        writer.Write("count", count);
        writer.Write("price", price);
        WriteItem(writer, "note", note);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("article", article);
        reader.Read("count", count);
        reader.Read("price", price);
        ReadItem(reader, "note", note);
    }

    std::string article;
    std::uint16_t count = 0;
    double price = 0;
    std::optional<std::string> note;
};

struct STax final : Vellum::ISerializable
{
    const char* GetTypeName() const override { return "Tax"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("name", name);
        writer.Write("rate", rate);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("name", name);
        reader.Read("rate", rate);
    }

    std::string name;
    float rate = 0;
};

struct SOrder final : Vellum::ISerializable
{
    const char* GetTypeName() const override { return "Order"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("id", id);
        writer.Write("buyer", buyer);
        writer.Write("lines", lines);
        writer.Write("taxes", taxes);
        writer.Write("isPaid", isPaid);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("id", id);
        reader.Read("buyer", buyer);
        reader.Read("lines", lines);
        reader.Read("taxes", taxes);
        reader.Read("isPaid", isPaid);
    }

    std::uint64_t id = 0;
    SBuyer buyer;
    SList<SLine> lines;
    SList<STax> taxes;
    bool isPaid = false;
};

struct SSensor final : Vellum::ISerializable
{
    const char* GetTypeName() const override { return "Sensor"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("name", name);
        writer.Write("values", values);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("name", name);
        reader.Read("values", values);
    }

    std::string name;
    SList<double> values;
};

struct STrack final : Vellum::ISerializable
{
    const char* GetTypeName() const override { return "Track"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("title", title);
        writer.Write("points", points);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("title", title);
        reader.Read("points", points);
    }

    std::string title;
    SList<SPoint> points;
};

struct SSettings final : Vellum::ISerializable
{
    const char* GetTypeName() const override { return "Settings"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("entries", entries);
        writer.Write("isVisible", isVisible);
        writer.Write("level", level);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("entries", entries);
        reader.Read("isVisible", isVisible);
        reader.Read("level", level);
    }

    SMap entries;
    bool isVisible = false;
    std::int16_t level = 0;
};

struct SShop final : Vellum::ISerializable
{
    const char* GetTypeName() const override { return "Shop"; }
    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("name", name);
        writer.Write("orders", orders);
        writer.Write("sensors", sensors);
        writer.Write("tracks", tracks);
        writer.Write("settings", settings);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("name", name);
        reader.Read("orders", orders);
        reader.Read("sensors", sensors);
        reader.Read("tracks", tracks);
        reader.Read("settings", settings);
    }

    std::string name;
    SList<SOrder> orders;
    SList<SSensor> sensors;
    SList<STrack> tracks;
    SSettings settings;
};

} // namespace Handwritten
