#pragma once

#include <cstddef>
#include <string>
#include <tuple>
#include <vector>
#include <Vellum/Vellum.h>

#include "Formats.h"

// Client classes that have all eighteen kinds.
class CNumbers : public Vellum::ISerializableContainer
{
public:
    const char* GetTypeName() const override { return "Numbers"; }
    void Write(Vellum::IContainerWriter& writer) const override
    {
        for (const double number : numbers)
            writer.Write(number);
    }
    void Read(Vellum::IContainerReader& reader) override
    {
        numbers.clear();
        for (double number; reader.Read(static_cast<std::uint32_t>(numbers.size()), number);)
            numbers.push_back(number);
    }

    std::vector<double> numbers;
};

class CInner : public Vellum::ISerializable
{
public:
    const char* GetTypeName() const override { return "Inner"; }
    void Write(Vellum::IDataWriter& writer) const override { writer.Write("numbers", numbers); }
    void Read(Vellum::IDataReader& reader) override { reader.Read("numbers", numbers); }

    CNumbers numbers;
};

class CEverything : public Vellum::ISerializable
{
public:
    const char* GetTypeName() const override { return "Everything"; }

    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("blob", blob.size(), blob.data());
        Visit(values, [&](const char* key, const auto& value) { writer.Write(key, value); });
    }

    void Read(Vellum::IDataReader& reader) override
    {
        const auto [begin, end] = reader.GetBlob("blob");
        blob.assign(begin, end);
        Visit(values, [&](const char* key, auto& value) { hasAll = reader.Read(key, value) && hasAll; });
    }

    // Some values that depend on the number, so that objects can be told apart.
    static CEverything Make(int number)
    {
        CEverything object;
        object.blob = {1, static_cast<unsigned char>(number), 3};
        CInner inner;
        inner.numbers.numbers = {0.5, number / 3.0};
        CbDateTime date("2024-03-07T09:05:01");
        date.SetYear(static_cast<unsigned short>(2000 + number % 1000));
        object.values = {inner,
                         date,
                         L"Wide \u00E4 " + std::to_wstring(number),
                         "narrow \t\" " + std::to_string(number),
                         'x',
                         1.0 / (number + 3),
                         0.1f,
                         -5'000'000'000 - number,
                         18'000'000'000'000'000'000u,
                         -number,
                         4'000'000'000u,
                         std::int16_t{-300},
                         std::uint16_t{60'000},
                         static_cast<signed char>(-5),
                         static_cast<unsigned char>(200),
                         true};
        return object;
    }

    // Two objects are equal if they give the same binary document.
    bool operator==(const CEverything& other) const
    {
        return Formats::SBinary::Write(*this) == Formats::SBinary::Write(other);
    }

    bool hasAll = true; // the last Read found each field

private:
    static void Visit(auto& values, auto action)
    {
        char key[] = "a"; // one letter for each value
        std::apply([&](auto&... value) { ((action(key, value), ++key[0]), ...); }, values);
    }

    std::vector<unsigned char> blob;
    std::tuple<CInner, CbDateTime, std::wstring, std::string, char, double, float, std::int64_t, std::uint64_t,
               std::int32_t, std::uint32_t, std::int16_t, std::uint16_t, signed char, unsigned char, bool>
        values{};
};
