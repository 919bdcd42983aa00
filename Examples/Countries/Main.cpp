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
#include <utility>
#include <vector>
#include <Vellum/Encodings.h>

#include "CStopwatch.h"
#include "RunMain.h"
#include "SCountry.h"

namespace
{

// Each file is an object with a single field, which is named after the standard and holds the list.
template <class Object>
std::vector<Object> LoadList(const std::filesystem::path& path, const std::string& standard)
{
    const CStopwatch reading;
    std::vector<Object> list = Vellum::Load<std::map<std::string, std::vector<Object>>>(path).at(standard);
    std::printf("%5zu objects in %.1f ms from %s\n", list.size(), reading.GetMilliseconds(), path.string().c_str());
    return list;
}

// The code of a subdivision begins with the two letters of its country.
std::vector<SCountry> LoadCountries(const std::filesystem::path& folder)
{
    auto countries = LoadList<SCountry>(folder / "iso_3166-1.json", "3166-1");
    std::map<std::string, SCountry*> byCode;
    for (SCountry& country : countries)
        byCode[country.alpha2] = &country;
    for (SSubdivision& subdivision : LoadList<SSubdivision>(folder / "iso_3166-2.json", "3166-2"))
        if (const auto country = byCode.find(subdivision.code.substr(0, 2)); country != byCode.end())
            country->second->subdivisions.push_back(std::move(subdivision));
    return countries;
}

std::vector<SCountry> ThroughBinary(const std::vector<SCountry>& countries)
{
    const CStopwatch time;
    const std::vector<unsigned char> bytes = Vellum::ToBinary(countries);
    auto copy = Vellum::FromBinary<std::vector<SCountry>>(bytes);
    std::printf("%zu bytes as a binary document, written and read in %.1f ms\n\n", bytes.size(),
                time.GetMilliseconds());
    return copy;
}

void Print(const SCountry& country)
{
    const std::wstring& name = country.commonName ? *country.commonName : country.name;
    std::cout << Vellum::Encodings::ToUTF8(country.flag) << ' ' << country.numeric << ' '
              << Vellum::Encodings::ToUTF8(name);
    if (country.officialName)
        std::cout << ", officially " << Vellum::Encodings::ToUTF8(*country.officialName);
    std::cout << ": " << country.subdivisions.size() << " subdivisions\n";
}

int Run(const std::filesystem::path& folder)
{
    const std::vector<SCountry> countries = LoadCountries(folder);
    const std::vector<SCountry> copy = ThroughBinary(countries);
    std::fflush(stdout);
    for (const SCountry& country : copy)
        if (country.commonName)
            Print(country);
    const bool isEqual = !copy.empty() && copy == countries;
    std::cout << (isEqual ? "\nAll countries came back as they were.\n" : "\nThe countries differ.\n");
    return isEqual ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    return RunMain("Countries", [&] { return Run(argc > 1 ? argv[1] : "/usr/share/iso-codes/json"); });
}
