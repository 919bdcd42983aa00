#pragma once

#include <cstdint>
#include <string>
#include <vector>
#include <Vellum/Vellum.h>

#include "CTextProfile.h"

// One file of a folder. Between them, this class, its profile and its folder use all eighteen kinds of value.
class CCatalogFile : public Vellum::ISerializable
{
public:
    const char* GetTypeName() const override { return "File"; }
    void Write(Vellum::IDataWriter& writer) const override;
    void Read(Vellum::IDataReader& reader) override;

    std::wstring name;                 // UTF-16
    std::string extension;             // bytes as the file system has them, with the point; empty if there is none
    char type = '-';                   // as `ls -l` shows it: - file, l link, ? anything else
    bool isHidden = false;             // the name begins with a point
    std::uint16_t permissions = 0;     // the nine bits of `chmod`
    std::uint64_t size = 0;            // bytes
    std::int64_t sizeAboveAverage = 0; // bytes more than the average file of its folder has
    std::int32_t ageInDays = 0;        // at the time of the scan; negative for a time in the future
    CbDateTime modified;               // UTC, to the second, which is what text documents can carry
    std::vector<unsigned char> head;   // the first 64 bytes
    CTextProfile profile;              // of the first 64 KiB
};
