#include "CCatalogFolder.h"

void CCatalogFolder::Write(Vellum::IDataWriter& writer) const
{
    writer.Write("name", name);
    writer.Write("depth", depth);
    writer.Write("totalSize", totalSize);
    writer.Write("modified", modified);
    writer.Write("files", files);
    writer.Write("folders", folders);
}

void CCatalogFolder::Read(Vellum::IDataReader& reader)
{
    reader.Read("name", name);
    reader.Read("depth", depth);
    reader.Read("totalSize", totalSize);
    reader.Read("modified", modified);
    reader.Read("files", files);
    reader.Read("folders", folders);
}

std::uint64_t CCatalogFolder::CountObjects() const
{
    std::uint64_t count = 1 + 2 * std::uint64_t{files.items.size()};
    for (const CCatalogFolder& folder : folders.items)
        count += folder.CountObjects();
    return count;
}
