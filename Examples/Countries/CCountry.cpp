#include "CCountry.h"

namespace
{

// The contract knows no null: what isn't there is not written.
template <class Text>
void WriteOptional(Vellum::IDataWriter& writer, const char* key, const std::optional<Text>& value)
{
    if (value)
        writer.Write(key, *value);
}

template <class Text>
void ReadOptional(const Vellum::IDataReader& reader, const char* key, std::optional<Text>& value)
{
    if (!reader.Read(key, value.emplace()))
        value.reset();
}

} // namespace

void CSubdivision::Write(Vellum::IDataWriter& writer) const
{
    writer.Write("code", code);
    writer.Write("name", name);
    writer.Write("type", type);
    WriteOptional(writer, "parent", parent);
}

void CSubdivision::Read(Vellum::IDataReader& reader)
{
    reader.Read("code", code);
    reader.Read("name", name);
    reader.Read("type", type);
    ReadOptional(reader, "parent", parent);
}

bool CSubdivision::operator==(const CSubdivision& other) const
{
    return code == other.code && name == other.name && type == other.type && parent == other.parent;
}

void CCountry::Write(Vellum::IDataWriter& writer) const
{
    writer.Write("alpha_2", alpha2);
    writer.Write("alpha_3", alpha3);
    writer.Write("numeric", numeric);
    writer.Write("name", name);
    writer.Write("flag", flag);
    WriteOptional(writer, "official_name", officialName);
    WriteOptional(writer, "common_name", commonName);
    writer.Write("subdivisions", subdivisions);
}

void CCountry::Read(Vellum::IDataReader& reader)
{
    reader.Read("alpha_2", alpha2);
    reader.Read("alpha_3", alpha3);
    reader.Read("numeric", numeric);
    reader.Read("name", name);
    reader.Read("flag", flag);
    ReadOptional(reader, "official_name", officialName);
    ReadOptional(reader, "common_name", commonName);
    reader.Read("subdivisions", subdivisions);
}

bool CCountry::operator==(const CCountry& other) const
{
    return alpha2 == other.alpha2 && alpha3 == other.alpha3 && numeric == other.numeric && name == other.name &&
           flag == other.flag && officialName == other.officialName && commonName == other.commonName &&
           subdivisions.items == other.subdivisions.items;
}
