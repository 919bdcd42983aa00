#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>
#include <vector>

#include "Platform/Compiler.h"
#include "Platform/ConstantText.h"

#include "Groundwork/CbKeyedHash.h"

namespace Vellum
{

// CBinaryKeys: the string table of a document that was read. Its texts are numbered from 0 on, in the order of their
// indices, each text once however many indices it has; a key is such a number from then on.
//
// Time     Numbers are found by a hash that no document can be made against. A long text that was handed out is known
//          by its address: it may be the key of very many entries, and a client that reads them all would have it
//          compared as often. So is, as long as no other comes, a literal of the program that was asked for.
// Memory   The texts are the caller's.
// Errors   std::bad_alloc.
// Threads  Complete is called once; from then on nothing changes but what is known by its address.
class CBinaryKeys
{
public:
    static constexpr std::uint32_t Unknown = 0xFFFFFFFF;

    // The text must outlive this object and end with a NUL.
    void Add(std::uint32_t index, std::string_view text)
    {
        largestIndex = std::max(largestIndex, index);
        entries.push_back({index, static_cast<std::uint32_t>(text.size()), text.data()});
    }

    // Called when all texts are there. Of entries with one index the last counts.
    void Complete()
    {
        isDense = largestIndex < entries.size(); // as in every document of our own
        std::vector<SEntry> byIndex = isDense ? place() : sort();
        entries = std::vector<SEntry>();
        slots.resize(std::bit_ceil(2 * byIndex.size() + 1));
        numbers.reserve(byIndex.size());
        for (const SEntry& entry : byIndex)
        {
            numbers.push_back(entry.text == nullptr ? Unknown : enter(entry));
            if (!isDense)
                indices.push_back(entry.index);
        }
        std::ranges::sort(longTexts, std::less(), &SLongText::address);
    }

    // The number of the text with that index in the document, or Unknown.
    std::uint32_t Resolve(std::uint32_t index) const
    {
        return index < numbers.size() && isDense ? numbers[index] : findSparse(index);
    }

    // Called when the document has been parsed: indices are no longer needed.
    void ForgetIndices()
    {
        indices = std::vector<std::uint32_t>();
        numbers = std::vector<std::uint32_t>();
    }

    // The number of a text, or Unknown.
    std::uint32_t Find(const char* text) const
    {
        const auto known = std::ranges::lower_bound(longTexts, text, std::less(), &SLongText::address);
        if (known != longTexts.end() && known->address == text)
            return known->number;
        return slots[find(text, std::strlen(text))] - 1;
    }
    const char* GetText(std::uint32_t number) const { return texts[number]; }

    // Whether that is the text of a number; any number may be asked for.
    bool Is(std::uint32_t number, const char* text) const
    {
        if (number >= MostConstants)
            return number < texts.size() && (texts[number] == text || std::strcmp(texts[number], text) == 0);
        return constants[number].load(std::memory_order_relaxed) == text || isText(number, text);
    }

private:
    // Of the first texts: where one came from last if it can't change there. Any thread may change it at any time.
    static constexpr std::uint32_t MostConstants = 64;

    bool isText(std::uint32_t number, const char* text) const
    {
        if (number >= texts.size() || (texts[number] != text && std::strcmp(texts[number], text) != 0))
            return false;
        if (Platform::IsConstant(text))
            constants[number].store(text, std::memory_order_relaxed);
        return true;
    }

    struct SEntry
    {
        std::uint32_t index;
        std::uint32_t size;
        const char* text; // null: no entry has the index
    };

    // Texts of that length are compared as fast as their address is found.
    static constexpr std::size_t MaxCompared = 64;

    struct SLongText
    {
        const char* address;
        std::uint32_t number;
    };

    VELLUM_NOINLINE std::uint32_t findSparse(std::uint32_t index) const
    {
        const auto found = std::ranges::lower_bound(indices, index);
        return found != indices.end() && *found == index ? numbers[static_cast<std::size_t>(found - indices.begin())]
                                                         : Unknown;
    }

    std::vector<SEntry> place() const
    {
        std::vector<SEntry> byIndex(entries.size());
        for (const SEntry& entry : entries)
            byIndex[entry.index] = entry;
        return byIndex;
    }

    std::vector<SEntry> sort()
    {
        std::ranges::stable_sort(entries, {}, &SEntry::index);
        const auto last = std::unique(entries.rbegin(), entries.rend(),
                                      [](const auto& left, const auto& right) { return left.index == right.index; });
        return {last.base(), entries.end()};
    }

    // The number of a text, which is a new one if the text is new.
    std::uint32_t enter(const SEntry& entry)
    {
        std::uint32_t& slot = slots[find(entry.text, entry.size)];
        if (slot == 0)
        {
            texts.push_back(entry.text);
            slot = static_cast<std::uint32_t>(texts.size());
            if (entry.size > MaxCompared)
                longTexts.push_back({entry.text, slot - 1});
        }
        return slot - 1;
    }

    // Where a text stands, or the free slot that it would get.
    std::size_t find(const char* text, std::size_t size) const
    {
        const std::size_t mask = slots.size() - 1;
        std::size_t at = static_cast<std::size_t>(hash(text, size)) & mask;
        while (slots[at] != 0 && std::strcmp(texts[slots[at] - 1], text) != 0)
            at = (at + 1) & mask;
        return at;
    }

    CbKeyedHash hash;
    bool isDense = true; // whether all indices are below the number of entries
    std::uint32_t largestIndex = 0;
    std::vector<SEntry> entries;        // as they came
    std::vector<std::uint32_t> indices; // ascending, if they aren't dense
    std::vector<std::uint32_t> numbers; // of the indices, or by index
    std::vector<const char*> texts;     // by number
    std::vector<std::uint32_t> slots;   // numbers + 1, by hash; at least half of them are 0
    std::vector<SLongText> longTexts;   // by address
    mutable std::array<std::atomic<const char*>, MostConstants> constants{};
};

} // namespace Vellum
