#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Groundwork/CbDateTime.h"

#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

// What all peers write and read: orders, long sequences of numbers, one object of a thousand fields, objects nested 200
// deep. All of it comes from a fixed seed and is the same on every machine.
//
// The objects are Vellum's client classes (their Write and Read are in Peers/Vellum.cpp), and plain structures to all
// other peers.
namespace Measured
{

inline const CbDateTime NoDate{std::uint64_t{0}};

struct SLine final : Vellum::ISerializable
{
    std::uint16_t quantity = 0;
    std::uint32_t article = 0;
    double price = 0;

    const char* GetTypeName() const override { return "Line"; }
    void Write(Vellum::IDataWriter& writer) const override;
    void Read(Vellum::IDataReader& reader) override;
};

struct SBuyer final : Vellum::ISerializable
{
    std::string name;
    std::string city;
    std::int32_t account = 0;

    const char* GetTypeName() const override { return "Buyer"; }
    void Write(Vellum::IDataWriter& writer) const override;
    void Read(Vellum::IDataReader& reader) override;
};

// A sequence as a document has it: of objects or of numbers.
template <class Element>
struct SSequence final : Vellum::ISerializableContainer
{
    std::vector<Element> elements;

    const char* GetTypeName() const override { return "Sequence"; }
    void Write(Vellum::IContainerWriter& writer) const override;
    void Read(Vellum::IContainerReader& reader) override;
};

using Signature = std::array<unsigned char, 32>;

struct SOrder final : Vellum::ISerializable
{
    std::uint32_t id = 0;
    std::string title; // 10 to 40 characters, some of them & < > "
    double total = 0;
    float discount = 0;
    bool paid = false;
    CbDateTime date = NoDate; // to the second
    SBuyer buyer;
    SSequence<SLine> lines; // three
    Signature signature{};

    const char* GetTypeName() const override { return "Order"; }
    void Write(Vellum::IDataWriter& writer) const override;
    void Read(Vellum::IDataReader& reader) override;
};

using Orders = SSequence<SOrder>;
using Doubles = SSequence<double>;
using Integers = SSequence<std::int32_t>;

// One object of a thousand int32 fields. They are written in the order of their keys and asked for in the order of
// `lookups`.
struct SFields : Vellum::ISerializable
{
    static constexpr std::uint32_t Count = 1000;
    static const std::vector<std::string>& GetKeys();

    std::vector<std::int32_t> values = std::vector<std::int32_t>(Count);
    const std::vector<std::uint32_t>& lookups;

    SFields() : SFields(GetWrittenOrder()) {}

    const char* GetTypeName() const override { return "Fields"; }
    void Write(Vellum::IDataWriter& writer) const override;
    void Read(Vellum::IDataReader& reader) override;

protected:
    explicit SFields(const std::vector<std::uint32_t>& lookups) : lookups(lookups) {}
    static const std::vector<std::uint32_t>& GetWrittenOrder();
    static const std::vector<std::uint32_t>& GetShuffledOrder();
};

// The same, asked for in shuffled order.
struct SShuffledFields final : SFields
{
    SShuffledFields() : SFields(GetShuffledOrder()) {}
};

// An object that has an object that has one, down to the last, which has none.
struct SLevel final : Vellum::ISerializable
{
    std::int32_t number = 0;
    std::string name;
    std::unique_ptr<SLevel> inner;

    const char* GetTypeName() const override { return "Level"; }
    void Write(Vellum::IDataWriter& writer) const override;
    void Read(Vellum::IDataReader& reader) override;
};

bool operator==(const SLine& left, const SLine& right);
bool operator==(const SBuyer& left, const SBuyer& right);
bool operator==(const SOrder& left, const SOrder& right);
bool operator==(const SFields& left, const SFields& right);
bool operator==(const SLevel& left, const SLevel& right);

template <class Element>
bool operator==(const SSequence<Element>& left, const SSequence<Element>& right)
{
    return left.elements == right.elements;
}

// What a benchmark has to know of each: the name of its lane, how many items it is measured with, how it is made, and
// whether writing it is a lane too.
template <class Objects>
struct SWorkload;

template <>
struct SWorkload<Orders>
{
    static constexpr const char* Name = "Orders";
    static constexpr std::array<std::uint32_t, 2> Counts{1000, 100000};
    static constexpr bool IsWritten = true;
    static Orders Make(std::uint32_t count);
};

template <>
struct SWorkload<Doubles>
{
    static constexpr const char* Name = "Doubles";
    static constexpr std::array<std::uint32_t, 1> Counts{1000000};
    static constexpr bool IsWritten = true;
    static Doubles Make(std::uint32_t count);
};

template <>
struct SWorkload<Integers>
{
    static constexpr const char* Name = "Int32";
    static constexpr std::array<std::uint32_t, 1> Counts{1000000};
    static constexpr bool IsWritten = true;
    static Integers Make(std::uint32_t count);
};

template <>
struct SWorkload<SFields>
{
    static constexpr const char* Name = "Fields";
    static constexpr std::array<std::uint32_t, 1> Counts{SFields::Count};
    static constexpr bool IsWritten = true;
    static SFields Make(std::uint32_t count);
};

template <>
struct SWorkload<SShuffledFields>
{
    static constexpr const char* Name = "FieldsShuffled";
    static constexpr std::array<std::uint32_t, 1> Counts{SFields::Count};
    static constexpr bool IsWritten = false;
    static SShuffledFields Make(std::uint32_t count);
};

template <>
struct SWorkload<SLevel>
{
    static constexpr const char* Name = "Levels";
    static constexpr std::array<std::uint32_t, 1> Counts{200};
    static constexpr bool IsWritten = true;
    static SLevel Make(std::uint32_t count);
};

} // namespace Measured
