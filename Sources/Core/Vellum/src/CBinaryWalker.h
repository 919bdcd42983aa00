#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Groundwork/CbStreamReadBinary.h"

namespace Vellum
{

// What a piece of a binary document is; Docs/BinaryFormat.md has the grammar.
//
//                what `count` is    what `text` is           where the path leads
//   Version      the version
//   RootTag
//   StringCount  of strings
//   String       its index          the string
//   Record       of sections                                 to the object
//   Section      of fields                                   to the object
//   Field                           of an object: its type   to the field
//   Sequence     of elements                                 to the sequence
//   Types        of type names      the type, if all alike   to the sequence
//   Element                         of an object: its type   to the element
//   Numbers      of numbers                                  to the sequence
//   RecordEnd                                                to the object
//   SequenceEnd                                              to the sequence
enum class EBinaryPart : std::uint8_t
{
    Version,
    RootTag,
    StringCount,
    String,
    Record,      // its first byte; sections follow, and RecordEnd
    Section,     // tag and count; fields follow
    Field,       // key and value; of an object key and type, of a sequence the key, and what it holds follows
    Sequence,    // tag and count; elements follow, and SequenceEnd
    Types,       // the type names in front of objects
    Element,     // a value; of an object its type, of a sequence nothing, and what it holds follows
    Numbers,     // all elements of a sequence of numbers
    RecordEnd,   // no bytes
    SequenceEnd, // no bytes
};

struct SBinaryPart
{
    EBinaryPart what;
    std::uint8_t tag = 0;     // the kind of the field, element, section, sequence or root
    std::uint64_t offset = 0; // from the start of the document, in bytes
    std::uint64_t size = 0;   // in bytes
    std::uint32_t head = 0; // how many of them, at the front, are no value: sizes of strings, indices of keys and types
    std::uint64_t count = 0;    // see EBinaryPart
    std::string_view text = {}; // see EBinaryPart; of keys and types it lives as long as the walker
};

// One step of the way from the root to a value.
struct SBinaryStep
{
    bool isElement = false;
    std::string_view key = {}; // of a field; lives as long as the walker
    std::uint64_t index = 0;   // of an element
};

// Why a document isn't one.
struct SBinaryDamage
{
    std::uint64_t offset = 0; // of what is wrong, from the start of the document
    std::string reason;       // what was expected and what stands there, in one English sentence
    std::string path;         // where, as in `lines[3].price`; empty for the root and what is in front of it
};

// "bool", "uint8" and so on; null for a tag of no kind.
const char* GetKindName(std::uint8_t tag) noexcept;

// `lines[3].price`; long keys are cut.
std::string ShowPath(const std::vector<SBinaryStep>& path);

// CBinaryWalker: goes through the bytes of a binary document, once from front to back, and tells what lies where. It
// accepts what CReaderBinary accepts, but looks at no value more than it has to.
//
// Memory   No more than the string table's, whatever counts and lengths stand in the document.
// Errors   Damage is a result. What the stream and the visitor raise passes through.
class CBinaryWalker
{
public:
    // Called for each part, in the order of the document.
    using Visitor = std::function<void(const SBinaryPart&)>;

    explicit CBinaryWalker(CbStreamReadBinary& source, Visitor called = {}) : stream(source), visitor(std::move(called))
    {
    }
    CBinaryWalker(const CBinaryWalker&) = delete;
    CBinaryWalker& operator=(const CBinaryWalker&) = delete;

    // Walks through the document that begins at the stream's present place; nothing if it is sound, and the stream
    // then stands behind it. To be called once.
    std::optional<SBinaryDamage> Walk();

    // Where the part is that the visitor is called for.
    const std::vector<SBinaryStep>& GetPath() const noexcept { return path; }

private:
    struct SDamage; // raised inside
    class CLevel;
    struct SString
    {
        std::uint32_t index;
        std::string text;
    };

    void walkStringTable();
    void walkString();
    void walkRecord();
    void walkSection();
    void walkField(std::uint8_t tag);
    void walkSequence();
    void walkTypes(std::uint32_t count);
    void walkElements(std::uint8_t tag, std::uint32_t count);
    void walkElement(std::uint8_t tag);
    void walkNumbers(std::uint8_t tag, std::uint32_t count);
    void walkNested(std::uint8_t tag);
    void skipValue(std::uint8_t tag);
    void skipWideText();
    void skipDate();

    template <class T>
    T read(const char* what);
    void readBytes(void* data, std::size_t count, const char* what);
    void skip(std::uint64_t count, std::uint32_t width, const char* what);
    std::uint8_t readTag();
    static void expectKind(std::uint8_t tag, std::uint64_t place);
    const SString* find(std::uint32_t index) const;
    const std::string& readIndex(const char* what);
    void visit(SBinaryPart part);
    [[noreturn]] static void fail(std::uint64_t offset, std::string reason);

    CbStreamReadBinary& stream;
    Visitor visitor;
    std::uint64_t offset = 0;
    std::uint32_t depth = 0;
    std::vector<SString> strings; // by index
    std::vector<SBinaryStep> path;
    std::array<std::uint8_t, 1 << 12> scratch{}; // not on the stack, which has many levels to hold
};

} // namespace Vellum
