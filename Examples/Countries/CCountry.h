#pragma once

#include <optional>
#include <string>
#include <Vellum/Vellum.h>

#include "CObjects.h"

// A part of a country: a state, a province, a parish.
class CSubdivision : public Vellum::ISerializable
{
public:
    const char* GetTypeName() const override { return "Subdivision"; }
    void Write(Vellum::IDataWriter& writer) const override;
    void Read(Vellum::IDataReader& reader) override;

    bool operator==(const CSubdivision& other) const;

    std::string code; // ISO 3166-2: the country's two letters, a hyphen and up to three more characters
    std::wstring name;
    std::string type;
    std::optional<std::string> parent; // code of the subdivision that it is a part of
};

// A country. The keys are those of the iso-codes files, which leave out what a country doesn't have.
class CCountry : public Vellum::ISerializable
{
public:
    const char* GetTypeName() const override { return "Country"; }
    void Write(Vellum::IDataWriter& writer) const override;
    void Read(Vellum::IDataReader& reader) override;

    bool operator==(const CCountry& other) const;

    std::string alpha2;  // ISO 3166-1, two letters
    std::string alpha3;  // three letters
    std::string numeric; // three digits: a text, since its leading zeros belong to it
    std::wstring name;
    std::wstring flag; // two characters beyond the Basic Multilingual Plane, so four UTF-16 units
    std::optional<std::wstring> officialName;
    std::optional<std::wstring> commonName;
    CObjects<CSubdivision> subdivisions{"Subdivisions"};
};

// One of the iso-codes files: an object with a single field, which is named after the standard and holds the list.
template <class Object>
class CIsoList : public Vellum::ISerializable
{
public:
    explicit CIsoList(const char* standard) : standard(standard) {}

    const char* GetTypeName() const override { return "IsoList"; }
    void Write(Vellum::IDataWriter& writer) const override { writer.Write(standard, list); }
    void Read(Vellum::IDataReader& reader) override { reader.Read(standard, list); }

    CObjects<Object> list{"List"};

private:
    const char* standard;
};
