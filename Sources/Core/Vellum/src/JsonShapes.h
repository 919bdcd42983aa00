#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Vellum/src/CArena.h"
#include "Vellum/src/CKeyHash.h"

// The keys of JSON objects. Records of one kind have the same keys in the same order, so all of them share what is
// known of these: an object of a parsed document is a shape, and a value for each key of it.
//
// Shapes form a tree. At its root is the shape without keys, and each other one is a shape with one key behind it. The
// parser goes along it while it reads an object: the key that came next when it was there before is nearly always the
// one that comes next now, and is recognised by a comparison. Nothing is hashed, and no key is searched for.
//
// When a client reads the first object of a shape, the shape gets a CJsonKeys, by which the client's keys are found.
namespace Vellum
{

class CJsonKeys;

// SJsonShape: the keys of an object, as they are written, one written twice twice. Keys of members that are null aren't
// among them. It is made by CJsonShapes, lies in the document's memory and lives as long.
struct SJsonShape
{
    const SJsonShape* shorter = nullptr; // all keys but the last; null for the shape without keys
    std::string_view key;                // the last one, in the client's text
    std::uint32_t count = 0;             // of keys

    SJsonShape* longer = nullptr;  // of the shapes with one key more, the last that was asked for
    SJsonShape* sibling = nullptr; // of those that `shorter` has beside this one, the next
    CJsonKeys* keys = nullptr;     // null as long as no client has read an object of this shape
};

// CJsonShapes: all shapes of one document.
//
// Memory   Of many shapes that go on from the same one, only those that were asked for last are looked at, and one that
//          isn't found is made a second time. So objects that have no keys in common cost no search.
// Errors   What can't be had is told as by the pool of a table of members.
class CJsonShapes
{
public:
    // What is made lies in the arena, which must live as long.
    explicit CJsonShapes(CArena& memory) : arena(&memory) {}

    CJsonShapes(const CJsonShapes&) = delete;
    CJsonShapes& operator=(const CJsonShapes&) = delete;

    // The shape of an object without members.
    SJsonShape& GetEmpty() { return empty; }

    // The shape with one key more.
    SJsonShape& Lengthen(SJsonShape& shape, std::string_view key);

    // What finds the keys of a shape.
    CJsonKeys& GetKeys(SJsonShape& shape) { return shape.keys != nullptr ? *shape.keys : makeKeys(shape); }

private:
    CJsonKeys& makeKeys(SJsonShape& shape);

    SJsonShape empty;
    CArena* arena;
};

// CJsonKeys: finds the keys of one shape, each once, and tells them to the client.
//
// Time     Who asks for keys in the order in which they are written finds each by one comparison. Any other is looked
//          for among few keys one after the other, and among many by a hash that keys can't be chosen against.
// Threads  Belongs to the thread that reads the document.
class CJsonKeys
{
public:
    // Stands for a key that isn't there.
    static constexpr std::uint32_t NoPlace = 0xFFFFFFFF;

    // What it needs lies in the arena, which must live as long.
    CJsonKeys(const SJsonShape& shape, CArena& arena);

    // How many keys there are.
    std::uint32_t GetCount() const { return count; }

    // A key as clients get it, zero-terminated, by its index below GetCount. They come in the order in which a table
    // has them into which they were inserted as they are written.
    const char* GetName(std::uint32_t index);

    // The place of the key's value among those of an object, which is the last one for a key that is written twice. It
    // is looked for first at the index `expected`, any number, which becomes the one behind where it was found.
    std::uint32_t Find(const char* key, std::uint32_t& expected) const
    {
        if (expected < count && isKey(keys[expected].text, key))
            return keys[expected++].place;
        return findElsewhere(key, expected);
    }

private:
    static constexpr std::uint32_t FewKeys = 8; // are found without a hash

    struct SKey
    {
        std::string_view text;
        std::uint32_t place;
    };

    // One slot of a hash table.
    struct SSlot
    {
        std::uint32_t mark;    // the upper half of the key's hash
        std::uint32_t ordinal; // its index and 1; 0 in a free slot
    };

    // Whether a zero-terminated key is that text, in which there is no zero.
    static bool isKey(std::string_view text, const char* key)
    {
        for (const char byte : text)
            if (*key++ != byte)
                return false;
        return *key == '\0';
    }

    std::uint32_t findElsewhere(const char* key, std::uint32_t& expected) const;
    std::uint32_t findIndex(std::string_view key) const;
    std::uint32_t findAmongFew(std::string_view key) const;
    SSlot& findSlot(std::string_view key, std::uint64_t hash) const;
    void makeSlots(std::uint32_t keyCount);
    void enter(const SKey& key);
    void gatherNames();

    CArena* arena;
    SKey* keys;                         // in the order in which they are first written
    std::uint32_t count = 0;            // of keys
    int slotShift = 0;                  // what the hash of a key is shifted by to be the place of its slot
    SSlot* slots = nullptr;             // a power of two, at least twice as many as keys; null for few keys
    const char* const* names = nullptr; // null as long as nobody has asked for one
    CKeyHash* hasher = nullptr;         // null for few keys
};

} // namespace Vellum
