#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Vellum::Describing
{

// CJsonScanner: walks over a JSON text without making anything of it, to tell what is wrong and where things stand. It
// takes and refuses what CReaderJson does; see Docs/JsonFormat.md. Strict is JSON as RFC 8259 has it, but for control
// bytes in texts, the words that stand for infinities and not-a-number, and nulls in sequences, which are refused.
class CJsonScanner
{
public:
    // What is refused, and where.
    struct SFault
    {
        const char* at;
        const char* reason;
        std::string path = {}; // as CDocumentException::GetPath tells it
    };

    // The text is zero-terminated and stays the caller's.
    CJsonScanner(const char* text, bool strictly) : at(text), isStrict(strictly) {}

    // Walks over the whole document. Throws SFault.
    void CheckDocument(bool isSequence);

    // From the beginning of an object or sequence to that of a value in it, the one that CReaderJson takes; null if
    // there is none.
    static const char* FindMember(const char* object, std::string_view key);
    static const char* FindElement(const char* sequence, std::uint32_t index);

    // The first byte that is no white space, which may be the end.
    static const char* SkipSpace(const char* text);

private:
    void toNext();
    std::string_view takeString();
    std::string_view takeWord(char terminator);
    void skipValue(char terminator);
    void takeComma(char terminator);

    // A fault that comes out of a value gets the value's part of the path.
    template <class Step, class Function>
    static void under(const Step& step, const Function& function);

    // Call the function with each key or index, with the scanner before the value.
    template <class Function>
    void forEachMember(const Function& function);
    template <class Function>
    void forEachElement(const Function& function);

    const char* at;
    bool isStrict;
    std::uint32_t depth = 0;
};

} // namespace Vellum::Describing
