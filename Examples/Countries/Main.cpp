// Reads two JSON files that others made, the lists of countries and of their subdivisions of Debian's package
// iso-codes, puts them together, stores the result as a binary document, reads it back and compares.
//
//   Countries [FOLDER]    where iso_3166-1.json and iso_3166-2.json are

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>
#include <string>
#include <Vellum/Vellum.h>

#include "CCountry.h"
#include "CStopwatch.h"
#include "RunMain.h"

namespace
{

template <class Object>
std::vector<Object> LoadList(const std::filesystem::path& path, const char* standard)
{
    const CStopwatch reading;
    const std::string text = Vellum::CTextFile().Read(path.wstring()).GetTextRaw();
    CIsoList<Object> file(standard);
    Vellum::CReaderJson(text).Read(file);
    std::printf("%5zu objects in %.1f ms from %s\n", file.list.items.size(), reading.GetMilliseconds(), path.c_str());
    return std::move(file.list.items);
}

// The code of a subdivision begins with the two letters of its country.
CObjects<CCountry> LoadCountries(const std::filesystem::path& folder)
{
    CObjects<CCountry> countries("Countries");
    countries.items = LoadList<CCountry>(folder / "iso_3166-1.json", "3166-1");
    std::map<std::string, CCountry*> byCode;
    for (CCountry& country : countries.items)
        byCode[country.alpha2] = &country;
    for (CSubdivision& subdivision : LoadList<CSubdivision>(folder / "iso_3166-2.json", "3166-2"))
        if (const auto country = byCode.find(subdivision.code.substr(0, 2)); country != byCode.end())
            country->second->subdivisions.items.push_back(std::move(subdivision));
    return countries;
}

CObjects<CCountry> ThroughBinary(const CObjects<CCountry>& countries)
{
    const CStopwatch time;
    CbStreamWriteBinaryBuffer bytes;
    Vellum::CWriterBinary(bytes).Write(countries);

    CObjects<CCountry> copy("Countries");
    CbStreamReadBinaryBuffer stream(bytes.GetData(), bytes.GetSize());
    Vellum::CReaderBinary(stream).Read(copy);
    std::printf("%u bytes as a binary document, written and read in %.1f ms\n\n",
                static_cast<unsigned>(bytes.GetSize()), time.GetMilliseconds());
    return copy;
}

void Print(const CCountry& country)
{
    const std::wstring& name = country.commonName ? *country.commonName : country.name;
    std::cout << Vellum::Encodings::ToUTF8(country.flag) << ' ' << country.numeric << ' '
              << Vellum::Encodings::ToUTF8(name);
    if (country.officialName)
        std::cout << ", officially " << Vellum::Encodings::ToUTF8(*country.officialName);
    std::cout << ": " << country.subdivisions.items.size() << " subdivisions\n";
}

int Run(const std::filesystem::path& folder)
{
    const CObjects<CCountry> countries = LoadCountries(folder);
    const CObjects<CCountry> copy = ThroughBinary(countries);
    std::fflush(stdout);
    for (const CCountry& country : copy.items)
        if (country.commonName)
            Print(country);
    const bool isEqual = !copy.items.empty() && copy.items == countries.items;
    std::cout << (isEqual ? "\nAll countries came back as they were.\n" : "\nThe countries differ.\n");
    return isEqual ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    return RunMain("Countries", [&] { return Run(argc > 1 ? argv[1] : "/usr/share/iso-codes/json"); });
}
