#include "Vellum/src/CBinaryWalker.h"

#include <algorithm>
#include <bit>

#include "Vellum/src/ByteText.h"
#include "Vellum/src/Limits.h"
#include "Vellum/src/PathText.h"
#include "Vellum/src/ValueKinds.h"

namespace Vellum
{
namespace
{

// By tag.
constexpr std::array<const char*, ValueKinds::Count> Names{
    "bool",  "char",  "uint8",  "int8",        "uint16",    "int16", "uint32", "int32",  "uint64",
    "int64", "float", "double", "narrow text", "wide text", "date",  "blob",   "object", "sequence"};
static_assert(Names.back() != nullptr, "a kind isn't told here");

// Longer keys are cut where they are shown: a path may have a thousand of them.
constexpr std::size_t MaxShownKey = 100;

} // namespace

const char* GetKindName(std::uint8_t tag) noexcept { return tag < Names.size() ? Names[tag] : nullptr; }

std::string ShowPath(const std::vector<SBinaryStep>& path)
{
    std::string shown;
    for (const SBinaryStep& step : path)
        if (step.isElement)
            AppendIndex(shown, step.index);
        else
        {
            AppendKey(shown, std::string_view(step.key).substr(0, MaxShownKey));
            shown += step.key.size() > MaxShownKey ? "..." : "";
        }
    return shown;
}

struct CBinaryWalker::SDamage
{
    std::uint64_t offset;
    std::string reason;
};

// One level of nesting, for as long as the walker is in it.
class CBinaryWalker::CLevel
{
public:
    explicit CLevel(CBinaryWalker& walker) : depth(walker.depth)
    {
        if (depth == MaxDepth)
            walker.fail(walker.offset, "Expected no more than " + std::to_string(MaxDepth) +
                                           " levels of objects and sequences, found another one.");
        ++depth;
    }
    CLevel(const CLevel&) = delete;
    CLevel& operator=(const CLevel&) = delete;
    ~CLevel() { --depth; }

private:
    std::uint32_t& depth;
};

std::optional<SBinaryDamage> CBinaryWalker::Walk()
{
    try
    {
        const auto version = read<std::uint32_t>("the version");
        visit({.what = EBinaryPart::Version, .size = sizeof version, .count = version});
        if (version != 0)
            fail(0, "Expected version 0 of the format, found version " + std::to_string(version) + '.');
        const auto tag = read<std::uint8_t>("the root's tag");
        visit({.what = EBinaryPart::RootTag, .tag = tag, .size = sizeof tag});
        walkStringTable();
        if (tag != TagObject && tag != TagSequence)
            fail(sizeof version,
                 "Expected the tag of an object, 16, or of a sequence, 17, found " + std::to_string(tag) + '.');
        walkNested(tag);
        return {};
    }
    catch (const SDamage& damage)
    {
        return SBinaryDamage{damage.offset, damage.reason, ShowPath(path)};
    }
}

void CBinaryWalker::walkStringTable()
{
    const auto count = read<std::uint32_t>("the number of strings");
    visit({.what = EBinaryPart::StringCount, .size = sizeof count, .count = count});
    for (std::uint32_t left = count; left != 0; --left)
        walkString();
    std::ranges::stable_sort(strings, {}, &SString::index);
    const auto last = std::unique(strings.rbegin(), strings.rend(), // of strings with one index the last counts
                                  [](const SString& left, const SString& right) { return left.index == right.index; });
    strings.erase(strings.begin(), last.base());
}

void CBinaryWalker::walkString()
{
    static constexpr std::size_t Most = 1 << 16;
    SString string{};
    std::uint32_t left = read<std::uint32_t>("the size of a string");
    const auto size = std::uint64_t{left};
    while (left != 0)
    {
        const std::size_t had = string.text.size();
        const std::size_t piece = std::min<std::size_t>(left, Most);
        string.text.resize(had + piece);
        readBytes(string.text.data() + had, piece, "a string");
        left -= static_cast<std::uint32_t>(piece);
    }
    string.text.resize(std::min(string.text.find('\0'), string.text.size())); // it ends at its first NUL
    string.index = read<std::uint32_t>("the index of a string");
    strings.push_back(std::move(string));
    visit({.what = EBinaryPart::String,
           .size = size + 2 * sizeof(std::uint32_t),
           .head = sizeof(std::uint32_t),
           .count = strings.back().index,
           .text = strings.back().text});
}

const CBinaryWalker::SString* CBinaryWalker::find(std::uint32_t index) const
{
    if (index < strings.size() && strings[index].index == index) // as in every document of our own
        return &strings[index];
    const auto found = std::ranges::lower_bound(strings, index, {}, &SString::index);
    return found != strings.end() && found->index == index ? &*found : nullptr;
}

const std::string& CBinaryWalker::readIndex(const char* what)
{
    const std::uint64_t start = offset;
    const auto index = read<std::uint32_t>(what);
    const SString* const string = find(index);
    if (string == nullptr)
        fail(start, std::string("Expected ") + what + ", found " + std::to_string(index) + ", which no string has.");
    return string->text;
}

void CBinaryWalker::walkRecord()
{
    const CLevel level(*this);
    const auto sections = read<std::uint8_t>("the number of sections");
    visit({.what = EBinaryPart::Record, .tag = TagObject, .size = sizeof sections, .count = sections});
    for (unsigned int left = sections; left != 0; --left)
        walkSection();
    visit({.what = EBinaryPart::RecordEnd, .tag = TagObject});
}

void CBinaryWalker::walkSection()
{
    const std::uint8_t tag = readTag();
    const auto count = read<std::uint32_t>("the number of fields");
    visit({.what = EBinaryPart::Section, .tag = tag, .size = sizeof tag + sizeof count, .count = count});
    for (std::uint32_t left = count; left != 0; --left)
        walkField(tag);
}

void CBinaryWalker::walkField(std::uint8_t tag)
{
    const std::uint64_t start = offset;
    path.push_back({.key = readIndex("the index of a key")});
    const std::string_view type = tag == TagObject ? readIndex("the index of a type name") : std::string_view();
    const auto head = static_cast<std::uint32_t>(offset - start);
    skipValue(tag);
    visit({.what = EBinaryPart::Field, .tag = tag, .size = offset - start, .head = head, .text = type});
    walkNested(tag);
    path.pop_back();
}

void CBinaryWalker::walkSequence()
{
    const CLevel level(*this);
    const auto tag = read<std::uint8_t>("the tag of elements");
    const auto count = read<std::uint32_t>("the number of elements");
    visit({.what = EBinaryPart::Sequence, .tag = tag, .size = sizeof tag + sizeof count, .count = count});
    if (count != 0) // otherwise the tag means nothing
        walkElements(tag, count);
    visit({.what = EBinaryPart::SequenceEnd, .tag = tag});
}

void CBinaryWalker::walkElements(std::uint8_t tag, std::uint32_t count)
{
    expectKind(tag, offset - sizeof tag - sizeof count);
    if (tag == TagObject)
        walkTypes(count);
    if (NumberWidths[tag] != 0)
        walkNumbers(tag, count);
    else
        for (std::uint32_t at = 0; at != count; ++at)
        {
            path.push_back({.isElement = true, .index = at});
            walkElement(tag);
            path.pop_back();
        }
}

void CBinaryWalker::walkTypes(std::uint32_t count)
{
    const std::uint64_t start = offset;
    const bool areAlike = read<std::uint8_t>("whether the types are alike") != 0;
    std::string_view type;
    for (std::uint32_t left = areAlike ? 1 : count; left != 0; --left)
        type = readIndex("the index of a type name");
    visit({.what = EBinaryPart::Types,
           .tag = TagObject,
           .size = offset - start,
           .head = static_cast<std::uint32_t>(offset - start),
           .count = areAlike ? 1 : count,
           .text = areAlike ? type : std::string_view()});
}

// Any index may stand in front of an object.
void CBinaryWalker::walkElement(std::uint8_t tag)
{
    const std::uint64_t start = offset;
    const SString* type = nullptr;
    if (tag == TagObject)
        type = find(read<std::uint32_t>("the index of a type name"));
    const auto head = static_cast<std::uint32_t>(offset - start);
    skipValue(tag);
    visit({.what = EBinaryPart::Element,
           .tag = tag,
           .size = offset - start,
           .head = head,
           .text = type == nullptr ? std::string_view() : type->text});
    walkNested(tag);
}

void CBinaryWalker::walkNumbers(std::uint8_t tag, std::uint32_t count)
{
    const std::uint64_t size = std::uint64_t{count} * NumberWidths[tag];
    if (size > 0xFFFFFFFF)
        fail(offset - sizeof count, "Expected less than 4 GiB of numbers, found " + std::to_string(size) + " bytes.");
    skip(count, NumberWidths[tag], "a sequence of numbers");
    visit({.what = EBinaryPart::Numbers, .tag = tag, .size = size, .count = count});
}

void CBinaryWalker::walkNested(std::uint8_t tag)
{
    if (tag == TagObject)
        walkRecord();
    else if (tag == TagSequence)
        walkSequence();
}

void CBinaryWalker::skipValue(std::uint8_t tag)
{
    if (tag == TagOf<std::string>)
        skip(read<std::uint32_t>("the size of a text"), 1, "a text");
    else if (tag == TagOf<std::wstring>)
        skipWideText();
    else if (tag == TagDate)
        skipDate();
    else if (tag == TagBlob)
        skip(read<std::uint32_t>("the size of a blob"), 1, "a blob");
    else if (NumberWidths[tag] != 0)
        readBytes(scratch.data(), NumberWidths[tag], Names[tag]);
}

void CBinaryWalker::skipWideText()
{
    const std::uint64_t start = offset;
    std::array<std::uint8_t, 3> mark{};
    readBytes(mark.data(), mark.size(), "the mark of a wide text");
    if (mark != std::array<std::uint8_t, 3>{0xFF, 0xFE, 0xFF})
        fail(start, "Expected FF FE FF, the mark of a wide text, found " + ShowByte(mark[0]) + ' ' + ShowByte(mark[1]) +
                        ' ' + ShowByte(mark[2]) + '.');
    const char* const length = "the length of a wide text";
    std::uint64_t count = read<std::uint8_t>(length);
    if (count == 0xFF)
        count = read<std::uint16_t>(length);
    if (count == 0xFFFF)
        count = read<std::uint32_t>(length);
    if (count == 0xFFFFFFFF)
        count = read<std::uint64_t>(length);
    skip(count, sizeof(char16_t), "a wide text");
}

void CBinaryWalker::skipDate()
{
    const std::uint64_t start = offset;
    const auto version = read<std::uint32_t>("the version of a date");
    if (version != 0)
        fail(start, "Expected version 0 of a date, found version " + std::to_string(version) + '.');
    read<std::uint64_t>("the ticks of a date");
}

template <class T>
T CBinaryWalker::read(const char* what)
{
    std::array<std::uint8_t, sizeof(T)> bytes{};
    readBytes(bytes.data(), bytes.size(), what);
    T value = 0;
    for (std::size_t at = sizeof(T); at-- != 0;)
        value = static_cast<T>(std::uint64_t{value} << 8 | bytes[at]);
    return value;
}

std::uint8_t CBinaryWalker::readTag()
{
    const std::uint64_t start = offset;
    const auto tag = read<std::uint8_t>("the tag of a section");
    expectKind(tag, start);
    return tag;
}

void CBinaryWalker::expectKind(std::uint8_t tag, std::uint64_t place)
{
    if (tag >= Names.size())
        fail(place, "Expected the tag of a kind, 0 to 17, found " + std::to_string(tag) + '.');
}

void CBinaryWalker::readBytes(void* data, std::size_t count, const char* what)
{
    const std::uint64_t delivered = stream.Read(data, count);
    if (delivered != count)
        fail(offset, std::string("Expected ") + what + ", found the end of the document after " +
                         std::to_string(delivered) + " of " + std::to_string(count) + " bytes.");
    offset += count;
}

// Passes over `count` pieces of `width` bytes. Their end isn't calculated: any count may stand in a document.
void CBinaryWalker::skip(std::uint64_t count, std::uint32_t width, const char* what)
{
    const std::uint64_t start = offset;
    for (std::uint64_t left = count; left != 0;)
    {
        const std::uint64_t most = std::min<std::uint64_t>(left, scratch.size() / width);
        const std::uint64_t delivered = stream.Read(scratch.data(), static_cast<std::size_t>(most * width));
        offset += delivered;
        if (delivered != most * width)
            fail(start, std::string("Expected ") + what + " of length " + std::to_string(count) +
                            ", found the end of the document after " + std::to_string(offset - start) +
                            (offset - start == 1 ? " byte." : " bytes."));
        left -= most;
    }
}

void CBinaryWalker::visit(SBinaryPart part)
{
    part.offset = offset - part.size;
    if (visitor)
        visitor(part);
}

void CBinaryWalker::fail(std::uint64_t offset, std::string reason) { throw SDamage{offset, std::move(reason)}; }

} // namespace Vellum
