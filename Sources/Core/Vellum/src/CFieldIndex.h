#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "Vellum/src/FieldOrder.h"

namespace Vellum
{

// CFieldIndex: finds fields of a record by key and kind. A few are walked through; of more, positions stand in a table
// of at least twice as many places, at the first free one from the place on that the key chooses.
//
// Errors   std::bad_alloc; what was entered stays.
class CFieldIndex
{
public:
    // The field, or null. The fields are those of the last call, and perhaps more.
    SRecordField* Find(std::vector<SRecordField>& fields, std::uint32_t key, std::uint8_t rank)
    {
        if (fields.size() <= MaxWalked)
            return walk(fields, key, rank);
        update(fields);
        for (std::size_t at = firstPlace(key);; at = (at + 1) & (places.size() - 1))
            if (places[at] == 0 || isThat(fields[places[at] - 1], key, rank))
                return places[at] == 0 ? nullptr : &fields[places[at] - 1];
    }

    // Called before there are fields of another record.
    void Clear() noexcept
    {
        entered = 0;
        places.clear();
    }

private:
    static constexpr std::size_t MaxWalked = 16;

    static bool isThat(const SRecordField& field, std::uint32_t key, std::uint8_t rank)
    {
        return field.key == key && field.rank == rank;
    }

    static SRecordField* walk(std::vector<SRecordField>& fields, std::uint32_t key, std::uint8_t rank)
    {
        for (SRecordField& field : fields)
            if (isThat(field, key, rank))
                return &field;
        return nullptr;
    }

    std::size_t firstPlace(std::uint32_t key) const
    {
        return static_cast<std::size_t>(key * std::uint64_t{0x9E3779B97F4A7C15u} >> 32) & (places.size() - 1);
    }

    void update(const std::vector<SRecordField>& fields)
    {
        if (places.size() < 2 * fields.size())
        {
            std::vector<std::uint32_t> larger(std::bit_ceil(4 * fields.size()));
            places.swap(larger);
            entered = 0;
        }
        for (; entered < fields.size(); ++entered)
        {
            std::size_t at = firstPlace(fields[entered].key);
            while (places[at] != 0)
                at = (at + 1) & (places.size() - 1);
            places[at] = static_cast<std::uint32_t>(entered + 1);
        }
    }

    std::vector<std::uint32_t> places; // position + 1, or 0
    std::size_t entered = 0;           // how many fields stand there
};

} // namespace Vellum
