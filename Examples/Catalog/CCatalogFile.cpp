#include "CCatalogFile.h"

void CCatalogFile::Write(Vellum::IDataWriter& writer) const
{
    writer.Write("name", name);
    writer.Write("extension", extension);
    writer.Write("type", type);
    writer.Write("isHidden", isHidden);
    writer.Write("permissions", permissions);
    writer.Write("size", size);
    writer.Write("sizeAboveAverage", sizeAboveAverage);
    writer.Write("ageInDays", ageInDays);
    writer.Write("modified", modified);
    if (!head.empty()) // text documents can't give an empty blob back; a blob that isn't there is read as an empty one
        writer.Write("head", head.size(), head.data());
    writer.Write("profile", profile);
}

void CCatalogFile::Read(Vellum::IDataReader& reader)
{
    reader.Read("name", name);
    reader.Read("extension", extension);
    reader.Read("type", type);
    reader.Read("isHidden", isHidden);
    reader.Read("permissions", permissions);
    reader.Read("size", size);
    reader.Read("sizeAboveAverage", sizeAboveAverage);
    reader.Read("ageInDays", ageInDays);
    reader.Read("modified", modified);
    const auto [begin, end] = reader.GetBlob("head");
    head.assign(begin, end);
    reader.Read("profile", profile);
}
