#include "Vellum/CReaderJson.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/Utf8.h"

#include "Groundwork/CbDateTime.h"

#include "Vellum/CException.h"
#include "Vellum/IContainerReader.h"
#include "Vellum/IDataReader.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Vellum/src/Base64Text.h"
#include "Vellum/src/CLocaleScope.h"
#include "Vellum/src/KindOperations.h"
#include "Vellum/src/Limits.h"
#include "Vellum/src/NumberText.h"
#include "Vellum/src/SJsonElement.h"
#include "Vellum/src/UnescapeText.h"
#include "Vellum/src/WhiteSpace.h"

// What is accepted, where white space may stand between any two signs and is HT, LF, VT, FF, CR or SP:
//
//   object := '{' ( string ':' value ','? )* '}'
//   array  := '[' ']' | '[' value ( ','? value )* ']'
//   value  := string | object | array | word
//   string := '"' ( any byte but '"' and '\' | '\' any byte )* '"'
//   word   := any bytes up to ',', white space or the bracket that closes what the word stands in; it may be empty
namespace Vellum
{

// The operations of SJsonElement stand here, since what they raise comes from this file.
SJsonElement::SJsonElement(std::uint32_t kind) : kind(kind)
{
    switch (kind)
    {
    case KindText:
        text = "";
        break;
    case KindObject:
        members = nullptr;
        break;
    case KindArray:
        elements = nullptr;
        break;
    default:
        throw CException(__FILE__, __LINE__, "Vellum::SJsonElement::SJsonElement");
    }
}

SJsonElement::~SJsonElement()
{
    if (kind == KindObject && members != nullptr)
        std::destroy_at(members);
    else if (kind == KindArray && elements != nullptr)
        std::destroy_at(elements);
}

void* SJsonElement::operator new(std::size_t size, SJsonDocument& document) { return document.memory.Allocate(size); }

namespace
{

// ---- Parsing. Texts are zero-terminated; every routine returns where the next one goes on. ----

// The first byte that is no white space, which is never the end of the text.
const char* SkipEmptyChars(const char* text)
{
    while (IsWhiteSpace(*text))
        ++text;
    if (*text == '\0')
        throw CException(__FILE__, __LINE__, "SkipEmptyChars");
    return text;
}

// From behind the opening quote to behind the closing one. An escaped byte can't close the string.
const char* ParseString(const char* text, std::string_view& raw)
{
    const char* at = text;
    for (; *at != '"'; ++at)
    {
        if (*at == '\\')
            ++at;
        if (*at == '\0')
            throw CException(__FILE__, __LINE__, "Vellum::ParseString");
    }
    raw = std::string_view(text, static_cast<std::size_t>(at - text));
    return at + 1;
}

const char* ParseObject(const char* text, JsonMembers*& members, SJsonDocument& document);
const char* ParseArray(const char* text, JsonElements*& elements, SJsonDocument& document);

const char* ParseWord(const char* text, char terminator, std::string_view& word)
{
    const char* at = text;
    for (; *at != ',' && *at != terminator && !IsWhiteSpace(*at); ++at)
        if (*at == '\0')
            throw CException(__FILE__, __LINE__, "ParseValue");
    word = std::string_view(text, static_cast<std::size_t>(at - text));
    return at;
}

// From the first byte of a value to behind it and the white space that follows. The terminator is the bracket that
// closes what the value stands in. The element is null for `null`.
std::pair<const char*, std::unique_ptr<SJsonElement>> ParseValue(const char* text, char terminator,
                                                                 SJsonDocument& document)
{
    std::unique_ptr<SJsonElement> element;
    std::string_view raw;
    switch (*text)
    {
    case '{':
        element.reset(new (document) SJsonElement(SJsonElement::KindObject));
        text = ParseObject(text, element->members, document);
        break;
    case '[':
        element.reset(new (document) SJsonElement(SJsonElement::KindArray));
        text = ParseArray(text, element->elements, document);
        break;
    case '"':
        text = ParseString(text + 1, raw);
        element.reset(new (document) SJsonElement(raw));
        break;
    default:
        text = ParseWord(text, terminator, raw);
        if (raw != "null")
            element.reset(new (document) SJsonElement(raw));
    }
    return {SkipEmptyChars(text), std::move(element)};
}

// The table of an object, made for its first member.
JsonMembers& GetMembers(JsonMembers*& members, SJsonDocument& document)
{
    if (members == nullptr)
    {
        members = new (document.memory.Allocate(sizeof(JsonMembers))) JsonMembers;
        members->SetPlexManager(document.plexManager);
    }
    return *members;
}

// Fills the table, which may be null until there is a member, and returns the place behind the closing bracket; null
// for the whole text `null`.
const char* ParseObject(const char* text, JsonMembers*& members, SJsonDocument& document)
{
    if (std::strcmp(text, "null") == 0)
        return nullptr;
    text = SkipEmptyChars(text);
    if (*text != '{' || ++document.depth > MaxDepth)
        throw CException(__FILE__, __LINE__, "Vellum::ParseObject");
    text = SkipEmptyChars(text + 1);
    while (*text != '}')
    {
        if (*text != '"')
            throw CException(__FILE__, __LINE__, "Vellum::ParseObject");
        std::string_view key;
        text = SkipEmptyChars(ParseString(text + 1, key));
        if (*text != ':')
            throw CException(__FILE__, __LINE__, "Vellum::ParseObject");
        auto [behind, element] = ParseValue(SkipEmptyChars(text + 1), '}', document);
        if (element != nullptr)
            GetMembers(members, document).FindOrInsert(key)->value = std::move(element);
        text = *behind == ',' ? SkipEmptyChars(behind + 1) : behind;
    }
    --document.depth;
    return text + 1;
}

// Moves the elements of the innermost array, those from `first` on, to where they belong: in memory of just the size.
void CloseArray(JsonElements*& elements, std::uint32_t first, SJsonDocument& document)
{
    JsonElements& openElements = document.openElements;
    if (openElements.GetSize() == first)
        return;
    if (elements == nullptr)
        elements = new (document.memory.Allocate(sizeof(JsonElements))) JsonElements;
    elements->Reserve(openElements.GetSize() - first);
    for (std::uint32_t index = first; index < openElements.GetSize(); ++index)
        elements->Add(std::move(openElements[index]));
    openElements.SetSize(first);
}

// Fills the array, which may be null until there is an element, and returns the place behind the closing bracket. The
// empty text is an empty array.
const char* ParseArray(const char* text, JsonElements*& elements, SJsonDocument& document)
{
    if (*text == '\0')
        return text;
    text = SkipEmptyChars(text);
    if (*text != '[' || ++document.depth > MaxDepth)
        throw CException(__FILE__, __LINE__, "Vellum::ParseArray");
    text = SkipEmptyChars(text + 1);
    if (*text == ',')
        throw CException(__FILE__, __LINE__, "Vellum::ParseArray");
    const std::uint32_t first = document.openElements.GetSize();
    while (*text != ']')
    {
        auto [behind, element] = ParseValue(text, ']', document);
        document.openElements.Add(std::move(element));
        text = *behind == ',' ? SkipEmptyChars(behind + 1) : behind;
        if (*behind == ',' && *text == ']')
            throw CException(__FILE__, __LINE__, "Vellum::ParseArray");
    }
    CloseArray(elements, first, document);
    --document.depth;
    return text + 1;
}

// ---- Conversion of one element. False for an element that isn't there or is of another kind. ----

// A raw text to a value.
template <std::integral Integer>
bool ReadText(std::string_view raw, Integer& value)
{
    value = static_cast<Integer>(Conversion::ViewToInt(raw));
    return true;
}

template <std::floating_point Real>
bool ReadText(std::string_view raw, Real& value)
{
    value = static_cast<Real>(Conversion::ViewToDouble(raw));
    return true;
}

bool ReadText(std::string_view raw, bool& value)
{
    value = raw == "true";
    return value || raw == "false";
}

// Only the quote is written with two bytes that both count.
bool ReadText(std::string_view raw, char& value)
{
    if (raw == "\\\"")
        value = '"';
    else
        value = raw.empty() ? '\0' : raw.front();
    return true;
}

bool ReadText(std::string_view raw, std::string& value)
{
    if (raw.find('\\') == std::string_view::npos)
        value.assign(raw);
    else
        value = UnescapeText(raw);
    return true;
}

// Up to the first NUL, which only an escape can have made.
bool ReadText(std::string_view raw, std::wstring& value)
{
    value.clear();
    if (raw.find('\\') == std::string_view::npos)
        Platform::AppendUtf16(value, raw);
    else
        Platform::AppendUtf16(value, UnescapeText(raw).c_str());
    return true;
}

bool ReadText(std::string_view raw, IDateTime& value)
{
    CbDateTime date(std::uint64_t{0}); // the default would read the clock
    std::array<char, 32> shortText;
    if (raw.size() < shortText.size())
    {
        *std::ranges::copy(raw, shortText.begin()).out = '\0';
        date = shortText.data();
    }
    else
        date = std::string(raw).c_str();
    value = date;
    return true;
}

template <class T>
bool ReadElement(const SJsonElement* element, T& value)
{
    return element != nullptr && element->kind == SJsonElement::KindText && ReadText(element->GetText(), value);
}

bool ReadElement(const SJsonElement* element, ISerializable& value);
bool ReadElement(const SJsonElement* element, ISerializableContainer& value);

// The decoded bytes of a blob, from the cache if they have been asked for before.
template <class Key, class KeyView>
BlobRange DecodeBlob(CbMapEx<Key, CbArray<unsigned char>>& blobs, const KeyView& key, const SJsonElement* element)
{
    if (const auto* const found = blobs.Find(key))
        return {found->value.GetData(), found->value.GetEnd()};
    if (element == nullptr || element->kind != SJsonElement::KindText)
        return {};
    const std::string_view text = element->GetText();
    CbArray<unsigned char> bytes(Base64::GetDecodedSizeOf(text));
    Base64::DecodeText(text, bytes.GetData(), bytes.GetSize());
    const CbArray<unsigned char>& kept = blobs.FindOrEmplace(key, std::move(bytes)).first->value;
    return {kept.GetData(), kept.GetEnd()};
}

// ---- The readers that a client meets. ----

class CDataReaderJson final : public CReadOperations<CDataReaderJson, IDataReader, const char*>
{
public:
    explicit CDataReaderJson(const JsonMembers* members) : members(members) {}

    std::uint32_t GetKeyCount() const override { return members == nullptr ? 0 : members->GetCount(); }
    const char* GetKey(std::uint32_t index) const override
    {
        if (keys.GetSize() == 0)
            gatherKeys();
        return keys[index];
    }
    BlobRange GetBlob(const char* key) override { return DecodeBlob(blobs, std::string_view(key), find(key)); }

    template <class T>
    bool readValue(const char* key, T& value) const
    {
        return ReadElement(find(key), value);
    }

private:
    const SJsonElement* find(const char* key) const
    {
        const auto* const member = members == nullptr ? nullptr : members->Find(key);
        return member == nullptr ? nullptr : member->value.get();
    }
    void gatherKeys() const
    {
        CbArray<const char*> gathered;
        gathered.Reserve(members->GetCount());
        for (const auto* member = members->GetFirst(); member != nullptr; member = member->next)
            gathered.Add(member->key.c_str());
        keys = std::move(gathered);
    }

    const JsonMembers* members;        // null without any
    mutable CbArray<const char*> keys; // in the table's order; gathered when the first one is asked for
    CbMapEx<std::string, CbArray<unsigned char>> blobs{128u, 4u}; // most objects have few, if any
};

class CContainerReaderJson final : public CReadOperations<CContainerReaderJson, IContainerReader, std::uint32_t>
{
public:
    explicit CContainerReaderJson(const JsonElements* elements) : elements(elements) {}

    BlobRange GetBlob(std::uint32_t index) override { return DecodeBlob(blobs, index, find(index)); }

    template <class T>
    bool readValue(std::uint32_t index, T& value) const
    {
        return ReadElement(find(index), value);
    }

private:
    const SJsonElement* find(std::uint32_t index) const
    {
        return elements != nullptr && index < elements->GetSize() ? (*elements)[index].get() : nullptr;
    }

    const JsonElements* elements; // null without any
    CbMapEx<unsigned int, CbArray<unsigned char>> blobs{128u, 4u};
};

bool ReadElement(const SJsonElement* element, ISerializable& value)
{
    if (element == nullptr || element->kind != SJsonElement::KindObject)
        return false;
    CDataReaderJson reader(element->members);
    value.Read(reader);
    return true;
}

bool ReadElement(const SJsonElement* element, ISerializableContainer& value)
{
    if (element == nullptr || element->kind != SJsonElement::KindArray)
        return false;
    CContainerReaderJson reader(element->elements);
    value.Read(reader);
    return true;
}

} // namespace

CReaderJson::CReaderJson(const char* text) : text(text) {}
CReaderJson::CReaderJson(const std::string& text) : text(text.c_str()) {}
CReaderJson::CReaderJson(std::string&& text)
    : kept(std::make_shared<const std::string>(std::move(text))), text(kept->c_str())
{
}
CReaderJson::CReaderJson(const CReaderJson& other) = default;
CReaderJson& CReaderJson::operator=(const CReaderJson& other) = default;
CReaderJson::~CReaderJson() = default;

void CReaderJson::Read(ISerializableContainer& root) const
{
    if (text == nullptr)
        throw CException(__FILE__, __LINE__, "Vellum::CReaderJson::Read");
    const CLocaleScope scope;
    SJsonDocument document;
    JsonElements table;
    JsonElements* elements = &table;
    ParseArray(text, elements, document);
    document.openElements = JsonElements(); // gives its memory back before the client goes on
    CContainerReaderJson reader(elements);
    root.Read(reader);
}

void CReaderJson::Read(ISerializable& root) const
{
    if (text == nullptr)
        throw CException(__FILE__, __LINE__, "Vellum::CReaderJson::Read");
    const CLocaleScope scope;
    SJsonDocument document;
    JsonMembers table; // with a pool of its own
    JsonMembers* members = &table;
    ParseObject(text, members, document);
    document.openElements = JsonElements(); // gives its memory back before the client goes on
    CDataReaderJson reader(members);
    root.Read(reader);
}

} // namespace Vellum
