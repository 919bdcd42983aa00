#pragma once

#include <cstdint>
#include <string>
#include <Vellum/Vellum.h>

#include "CCatalogFile.h"
#include "CObjects.h"

// A folder with its files and its subfolders, and so a whole tree.
class CCatalogFolder : public Vellum::ISerializable
{
public:
    const char* GetTypeName() const override { return "Folder"; }
    void Write(Vellum::IDataWriter& writer) const override;
    void Read(Vellum::IDataReader& reader) override;

    // Objects in the tree: this folder, its subfolders, the files, and their profiles.
    std::uint64_t CountObjects() const;

    std::wstring name;           // UTF-16
    std::uint8_t depth = 0;      // folders between this one and the root of the catalog, 255 if there are more
    std::uint64_t totalSize = 0; // bytes of all files in the tree
    CbDateTime modified;         // UTC, to the second
    CObjects<CCatalogFile> files{"Files"};
    CObjects<CCatalogFolder> folders{"Folders"};
};
