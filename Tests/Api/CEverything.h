#pragma once

#include <string>
#include <vector>
#include <Vellum/Vellum.h>

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
        Visit(*this, [&](const char* key, const auto& value) { writer.Write(key, value); });
    }

    void Read(Vellum::IDataReader& reader) override
    {
        const auto [begin, end] = reader.GetBlob("blob");
        blob.assign(begin, end);
        Visit(*this, [&](const char* key, auto& value) { hasAll = reader.Read(key, value) && hasAll; });
    }

    // Some values that depend on the number, so that objects can be told apart.
    static CEverything Make(int number)
    {
        CEverything object;
        object.blob = {1, static_cast<unsigned char>(number), 3};
        object.inner.numbers.numbers = {0.5, number / 3.0};
        object.date = CbDateTime("2024-03-07T09:05:01");
        object.date.SetYear(static_cast<unsigned short>(2000 + number % 1000));
        object.wide = L"Wide \u00E4 " + std::to_wstring(number);
        object.narrow = "narrow \t\" " + std::to_string(number);
        object.letter = 'x';
        object.real = 1.0 / (number + 3);
        object.single = 0.1f;
        object.i64 = -5'000'000'000 - number;
        object.u64 = 18'000'000'000'000'000'000u;
        object.i32 = -number;
        object.u32 = 4'000'000'000u;
        object.i16 = -300;
        object.u16 = 60'000;
        object.i8 = -5;
        object.u8 = 200;
        object.flag = true;
        return object;
    }

    // Two objects are equal if they give the same binary document.
    bool operator==(const CEverything& other) const { return toBytes() == other.toBytes(); }

    bool hasAll = true; // the last Read found each field

private:
    template <class Self, class Action>
    static void Visit(Self& self, Action action)
    {
        action("inner", self.inner);
        action("date", self.date);
        action("wide", self.wide);
        action("narrow", self.narrow);
        action("letter", self.letter);
        action("real", self.real);
        action("single", self.single);
        action("i64", self.i64);
        action("u64", self.u64);
        action("i32", self.i32);
        action("u32", self.u32);
        action("i16", self.i16);
        action("u16", self.u16);
        action("i8", self.i8);
        action("u8", self.u8);
        action("flag", self.flag);
    }

    std::string toBytes() const
    {
        CbStreamWriteBinaryBuffer stream;
        Vellum::CWriterBinary(stream).Write(*this);
        return std::string(stream.GetData(), stream.GetData() + stream.GetSize());
    }

    std::vector<unsigned char> blob;
    CInner inner;
    CbDateTime date;
    std::wstring wide;
    std::string narrow;
    char letter = 0;
    double real = 0;
    float single = 0;
    std::int64_t i64 = 0;
    std::uint64_t u64 = 0;
    std::int32_t i32 = 0;
    std::uint32_t u32 = 0;
    std::int16_t i16 = 0;
    std::uint16_t u16 = 0;
    signed char i8 = 0;
    unsigned char u8 = 0;
    bool flag = false;
};
