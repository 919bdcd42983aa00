#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "Vellum/src/SFault.h"

namespace Vellum
{

// What a JSON document has to be.
enum class EJsonRoot : std::uint8_t
{
    Object,
    Sequence,
    Either
};

// CJsonScanner: walks over a JSON text without making anything of it, to tell what is wrong and where things stand. It
// takes and refuses what CReaderJson does; see Docs/JsonFormat.md. Strict is JSON as RFC 8259 has it, but for control
// bytes in texts, the words that stand for infinities and not-a-number, and nulls in sequences, which are refused.
//
// Whoever wants to make something of the text walks with it, value by value: Peek tells which of the operations below
// takes the next value.
class CJsonScanner
{
public:
    // The text is zero-terminated and stays the caller's.
    CJsonScanner(const char* document, bool strictly) : text(document), at(document), isStrict(strictly) {}

    // Walks over the whole document. Throws SFault, as all operations do.
    void CheckDocument(EJsonRoot root);

    // Goes to the bracket of the root. False for a document that has none: the empty text is a sequence, and the text
    // `null` an object.
    bool BeginDocument(EJsonRoot root);

    // The first byte of the next value, or of what stands in its place.
    char Peek() const { return *at; }

    // Call the function with each key or index, which has to take the value.
    template <class Function>
    void ForEachMember(const Function& function);
    template <class Function>
    void ForEachElement(const Function& function);

    // Without its quotes, with its escapes as they stand.
    std::string_view TakeString();

    // The terminator is the bracket that closes what the word stands in.
    std::string_view TakeWord(char terminator);

    // Any value.
    void SkipValue(char terminator);

    // From the beginning of an object or sequence to that of a value in it, the one that CReaderJson takes; null if
    // there is none.
    static const char* FindMember(const char* object, std::string_view key);
    static const char* FindElement(const char* sequence, std::uint32_t index);

    // The first byte that is no white space, which may be the end.
    static const char* SkipSpace(const char* text);

private:
    [[noreturn]] void raise(const char* place, const std::string& expected) const;
    void toNext(const char* expected);
    void enter();
    void takeKey(std::string_view& key);
    void takeComma(char terminator);

    const char* text;
    const char* at;
    bool isStrict;
    std::uint32_t depth = 0;
};

template <class Function>
void CJsonScanner::ForEachMember(const Function& function)
{
    enter();
    toNext("a key or \"}\"");
    while (*at != '}')
    {
        std::string_view key;
        takeKey(key);
        UnderKey(key, [&] { function(key); });
        takeComma('}');
    }
    ++at;
    --depth;
}

template <class Function>
void CJsonScanner::ForEachElement(const Function& function)
{
    enter();
    toNext("a value or \"]\"");
    if (*at == ',')
        raise(at, "a value or \"]\"");
    for (std::uint32_t index = 0; *at != ']'; ++index)
    {
        UnderIndex(index,
                   [&]
                   {
                       if (isStrict && std::strncmp(at, "null", 4) == 0)
                           raise(at, "an element of the sequence");
                       function(index);
                   });
        takeComma(']');
    }
    ++at;
    --depth;
}

} // namespace Vellum
