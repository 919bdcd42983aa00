#include "Peers/Vellum.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "Vellum/Vellum.h"

#include "Support/Measure.h"

namespace Measured
{

void SLine::Write(Vellum::IDataWriter& writer) const
{
    writer.Write("quantity", quantity);
    writer.Write("article", article);
    writer.Write("price", price);
}

void SLine::Read(Vellum::IDataReader& reader)
{
    reader.Read("quantity", quantity);
    reader.Read("article", article);
    reader.Read("price", price);
}

void SBuyer::Write(Vellum::IDataWriter& writer) const
{
    writer.Write("name", name);
    writer.Write("city", city);
    writer.Write("account", account);
}

void SBuyer::Read(Vellum::IDataReader& reader)
{
    reader.Read("name", name);
    reader.Read("city", city);
    reader.Read("account", account);
}

void SOrder::Write(Vellum::IDataWriter& writer) const
{
    writer.Write("id", id);
    writer.Write("title", title);
    writer.Write("total", total);
    writer.Write("discount", discount);
    writer.Write("paid", paid);
    writer.Write("date", date);
    writer.Write("buyer", buyer);
    writer.Write("lines", lines);
    writer.Write("signature", signature.size(), signature.data());
}

void SOrder::Read(Vellum::IDataReader& reader)
{
    reader.Read("id", id);
    reader.Read("title", title);
    reader.Read("total", total);
    reader.Read("discount", discount);
    reader.Read("paid", paid);
    reader.Read("date", date);
    reader.Read("buyer", buyer);
    reader.Read("lines", lines);
    const Vellum::BlobRange range = reader.GetBlob("signature");
    if (range.second - range.first == static_cast<std::ptrdiff_t>(signature.size()))
        std::copy(range.first, range.second, signature.begin());
}

template <class Element>
void SSequence<Element>::Write(Vellum::IContainerWriter& writer) const
{
    for (const Element& element : elements)
        writer.Write(element);
}

template <class Element>
void SSequence<Element>::Read(Vellum::IContainerReader& reader)
{
    elements.emplace_back();
    for (std::uint32_t index = 0; reader.Read(index, elements.back()); ++index)
        elements.emplace_back();
    elements.pop_back();
}

template struct SSequence<SLine>;
template struct SSequence<SOrder>;
template struct SSequence<double>;
template struct SSequence<std::int32_t>;

void SFields::Write(Vellum::IDataWriter& writer) const
{
    for (std::uint32_t index = 0; index < Count; ++index)
        writer.Write(GetKeys()[index].c_str(), values[index]);
}

void SFields::Read(Vellum::IDataReader& reader)
{
    for (const std::uint32_t index : lookups)
        reader.Read(GetKeys()[index].c_str(), values[index]);
}

void SLevel::Write(Vellum::IDataWriter& writer) const
{
    writer.Write("number", number);
    writer.Write("name", name);
    if (inner)
        writer.Write("inner", *inner);
}

void SLevel::Read(Vellum::IDataReader& reader)
{
    reader.Read("number", number);
    reader.Read("name", name);
    auto made = std::make_unique<SLevel>();
    if (reader.Read("inner", *made))
        inner = std::move(made);
}

namespace
{

template <class Writer>
std::string WriteText(const auto& objects)
{
    std::ostringstream stream;
    Writer(stream).Write(objects);
    return std::move(stream).str();
}

struct SVellumBinary
{
    static constexpr const char* Format = "Binary";
    static constexpr const char* Name = "Vellum";

    static CbStreamWriteBinaryBuffer Write(const auto& objects)
    {
        CbStreamWriteBinaryBuffer stream;
        Vellum::CWriterBinary(stream).Write(objects);
        return stream;
    }
    static void Read(const CbStreamWriteBinaryBuffer& document, auto& objects)
    {
        CbStreamReadBinaryBuffer stream(document.GetData(), document.GetSize());
        Vellum::CReaderBinary(stream).Read(objects);
    }
};

struct SVellumJson
{
    static constexpr const char* Format = "Json";
    static constexpr const char* Name = "Vellum";

    static std::string Write(const auto& objects) { return WriteText<Vellum::CWriterJson>(objects); }
    static void Read(const std::string& document, auto& objects) { Vellum::CReaderJson(document).Read(objects); }
};

struct SVellumXml
{
    static constexpr const char* Format = "Xml";
    static constexpr const char* Name = "Vellum";

    static std::string Write(const auto& objects) { return WriteText<Vellum::CWriterXml>(objects); }
    static void Read(const std::string& document, auto& objects) { Vellum::CReaderXml(document).Read(objects); }
};

[[maybe_unused]] const bool added = AddPeer<SVellumBinary>() && AddPeer<SVellumJson>() && AddPeer<SVellumXml>();

} // namespace

std::string WriteVellumJson(const Vellum::ISerializableContainer& objects) { return SVellumJson::Write(objects); }
std::string WriteVellumJson(const Vellum::ISerializable& objects) { return SVellumJson::Write(objects); }

} // namespace Measured
