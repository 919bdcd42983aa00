#pragma once

#include <Describe/Describe.h>
#include <string>
#include <vector>
#include <Vellum/Vellum.h>

#include "Formats.h"

// All eighteen kinds.
struct SContent
{
    struct SInner
    {
        std::vector<double> numbers;
    };
    SInner inner;
    CbDateTime date{"2024-03-07T09:05:01"};
    std::vector<unsigned char> blob;
    std::wstring wide;
    std::string narrow;
    char letter = 'x';
    double real = 0;
    float small = 0.1f;
    std::int64_t int64 = 0;
    std::uint64_t uint64 = 18'000'000'000'000'000'000u;
    std::int32_t int32 = 0;
    std::uint32_t uint32 = 4'000'000'000u;
    std::int16_t int16 = -300;
    std::uint16_t uint16 = 60'000;
    signed char int8 = -5;
    unsigned char uint8 = 200;
    bool yes = true;
};

// A client class that has them.
class CEverything : public Vellum::ISerializable
{
public:
    const char* GetTypeName() const override { return "Everything"; }
    void Write(Vellum::IDataWriter& writer) const override { Vellum::WriteField(writer, "content", content); }
    void Read(Vellum::IDataReader& reader) override { Vellum::ReadField(reader, "content", content); }

    // Some values that depend on the number, so that objects can be told apart.
    static CEverything Make(int number)
    {
        CEverything object;
        SContent& content = object.content;
        content.inner.numbers = {0.5, number / 3.0};
        content.date.SetYear(static_cast<unsigned short>(2000 + number % 1000));
        content.blob = {1, static_cast<unsigned char>(number), 3};
        content.wide = L"Wide \u00E4 " + std::to_wstring(number);
        content.narrow = "narrow \t\" " + std::to_string(number);
        content.real = 1.0 / (number + 3);
        content.int64 = -5'000'000'000 - number;
        content.int32 = -number;
        return object;
    }

    // Two objects are equal if they give the same binary document.
    bool operator==(const CEverything& other) const
    {
        return Formats::SBinary::Write(*this) == Formats::SBinary::Write(other);
    }

private:
    SContent content;
};
