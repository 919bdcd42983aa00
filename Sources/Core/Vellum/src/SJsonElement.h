#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Groundwork/CbArray.h"
#include "Groundwork/CbMapEx.h"

#include "Vellum/src/CArena.h"
#include "Vellum/src/TypeNames.h"

namespace Vellum
{

struct SJsonElement;
struct SJsonDocument;

using JsonMembers = CbMapEx<std::string, std::unique_ptr<SJsonElement>, 0, std::hash<std::string>,
                            std::equal_to<std::string>, CbMapPolicyPlexManager>;
using JsonElements = CbArray<std::unique_ptr<SJsonElement>>;
using JsonPool = CbPlexManager<JsonMembers::SAssociation>;

// SJsonElement: one value of a parsed document: a text, an object or an array. `null` is no element.
//
// Texts    A quoted text with its escapes as they stand, or a word such as 12 or true: what it means is decided when
//          the client asks for it. The bytes are those of the client's document.
// Memory   Elements, tables and arrays lie in the document's memory and are handled by std::unique_ptr nonetheless:
//          deleting one ends its life, and the memory is given back with the document's. An object has no table, and an
//          array none of its own, before there is something to put into it.
struct SJsonElement
{
    // 1 is no kind.
    static constexpr std::uint32_t KindText = 0;
    static constexpr std::uint32_t KindObject = 2;
    static constexpr std::uint32_t KindArray = 3;

    // An empty text, object or array. CException ("Vellum::SJsonElement::SJsonElement") for any other kind.
    explicit SJsonElement(std::uint32_t kind);
    explicit SJsonElement(std::string_view rawText) : kind(KindText), textSize(rawText.size()), text(rawText.data()) {}
    ~SJsonElement();

    SJsonElement(const SJsonElement&) = delete;
    SJsonElement& operator=(const SJsonElement&) = delete;

    static void* operator new(std::size_t size, SJsonDocument& document);
    static void operator delete(void*, SJsonDocument&) noexcept {}
    static void operator delete(void*) noexcept {}

    std::string_view GetText() const { return {text, textSize}; }

    std::uint32_t kind;
    std::size_t textSize = 0; // of a text, in bytes
    union
    {
        const char* text;       // not owned and not terminated
        JsonMembers* members;   // owned; null in an empty object
        JsonElements* elements; // owned; null in an empty array
    };
};

// SJsonDocument: what all parts of one document share while it is parsed and read.
struct SJsonDocument
{
    static constexpr unsigned int FirstBlockSize = 1024; // nodes

    // Small documents fit in here.
    alignas(8) std::array<unsigned char, 2048> firstMemory;
    CArena memory{firstMemory.data(), firstMemory.size()};

    // Of the tables of all objects but the root.
    std::shared_ptr<JsonPool> plexManager = std::make_shared<JsonPool>(FirstBlockSize);

    // The elements so far of all arrays that are still open, those of the innermost last.
    JsonElements openElements;

    std::uint32_t depth = 0; // of open brackets
};

} // namespace Vellum
