#pragma once

#include <Describe/Describe.h>
#include <optional>
#include <string>
#include <vector>

// A part of a country: a state, a province, a parish. Its members are named as the fields of the iso-codes files are,
// so there is nothing to describe.
struct SSubdivision
{
    std::string code; // ISO 3166-2: the country's two letters, a hyphen and up to three more characters
    std::wstring name;
    std::string type;
    std::optional<std::string> parent; // code of the subdivision that it is a part of

    bool operator==(const SSubdivision&) const = default;
};

// A country. The files leave out what a country doesn't have.
struct SCountry
{
    static constexpr auto Describe()
    {
        // clang-format off
        return Vellum::Fields("Country",
                              Vellum::Field("alpha_2", &SCountry::alpha2).Required(),
                              Vellum::Field("alpha_3", &SCountry::alpha3),
                              Vellum::Field("numeric", &SCountry::numeric),
                              Vellum::Field("name", &SCountry::name).Required(),
                              Vellum::Field("flag", &SCountry::flag),
                              Vellum::Field("official_name", &SCountry::officialName),
                              Vellum::Field("common_name", &SCountry::commonName),
                              Vellum::Field("subdivisions", &SCountry::subdivisions));
        // clang-format on
    }

    bool operator==(const SCountry&) const = default;

    std::string alpha2;  // ISO 3166-1, two letters
    std::string alpha3;  // three letters
    std::string numeric; // three digits: a text, since its leading zeros belong to it
    std::wstring name;
    std::wstring flag; // two characters beyond the Basic Multilingual Plane, so four UTF-16 units
    std::optional<std::wstring> officialName;
    std::optional<std::wstring> commonName;
    std::vector<SSubdivision> subdivisions;
};
