#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

#include "Vellum/src/CArena.h"
#include "Vellum/src/JsonShapes.h"

namespace Vellum
{

struct SJsonElement;

// SJsonObject: the members of an object, a value for each key of the shape.
struct SJsonObject
{
    SJsonShape* shape;
    const SJsonElement* values;
};

using JsonElements = std::span<const SJsonElement>;

// SJsonElement: one value of a parsed document: a text, an object, an array, or nothing, which is `null`.
//
// Texts    A quoted text with its escapes as they stand, or a word such as 12 or true: what it means is decided when
//          the client asks for it. The bytes are those of the client's document.
// Memory   Two words of plain data, which own nothing. The elements of one object or one array lie side by side, in
//          memory that the document gives back as a whole.
struct SJsonElement
{
    enum EKind : std::uint8_t
    {
        Text,
        Nothing,
        Object,
        Array
    };

    SJsonElement() : SJsonElement(Nothing, 0, nullptr) {}
    explicit SJsonElement(std::string_view raw) : SJsonElement(Text, raw.size() << KindBits, raw.data()) {}
    explicit SJsonElement(JsonElements elements) : SJsonElement(Array, elements.size() << KindBits, elements.data()) {}
    explicit SJsonElement(const SJsonObject& object)
        : SJsonElement(Object, reinterpret_cast<std::uintptr_t>(object.shape), object.values)
    {
    }

    EKind GetKind() const { return static_cast<EKind>(word & KindMask); }

    // What it is, to who knows the kind.
    std::string_view GetText() const { return {static_cast<const char*>(content), getSize()}; }
    JsonElements GetElements() const { return {static_cast<const SJsonElement*>(content), getSize()}; }
    SJsonObject GetObject() const
    {
        return {reinterpret_cast<SJsonShape*>(static_cast<std::uintptr_t>(word - Object)),
                static_cast<const SJsonElement*>(content)};
    }

private:
    static constexpr int KindBits = 2;
    static constexpr std::uint64_t KindMask = 3;
    static_assert(alignof(SJsonShape) > KindMask);

    SJsonElement(EKind kind, std::uint64_t bits, const void* place) : word(bits | kind), content(place) {}

    std::size_t getSize() const { return static_cast<std::size_t>(word >> KindBits); }

    std::uint64_t word;  // the size of a text or an array, above the kind; or the address of the shape, with the kind
    const void* content; // the bytes of a text, the elements of an array, the values of an object
};
static_assert(std::is_trivially_copyable_v<SJsonElement>); // as an arena needs it

// SJsonDocument: what all parts of one document share while it is parsed and read.
struct SJsonDocument
{
    // Small documents fit in here.
    alignas(8) std::array<unsigned char, 2048> firstMemory;
    CArena memory{firstMemory.data(), firstMemory.size()};

    CJsonShapes shapes{memory};

    // The elements so far of all objects and arrays that are still open, those of the innermost last. Those of the root
    // stay here.
    std::vector<SJsonElement> open;
};

} // namespace Vellum
