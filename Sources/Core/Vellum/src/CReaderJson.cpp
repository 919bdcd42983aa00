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
#include <vector>

#include "Platform/Utf8.h"

#include "Groundwork/CbDateTime.h"

#include "Vellum/CException.h"
#include "Vellum/IContainerReader.h"
#include "Vellum/IDataReader.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Vellum/src/CDecodedBlobs.h"
#include "Vellum/src/CLocaleScope.h"
#include "Vellum/src/EightBytes.h"
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

namespace
{

// CJsonParser: the parser of one document. Texts are zero-terminated; every routine returns where the next one goes on,
// and leaves what it has read as the last open element of the document.
class CJsonParser
{
public:
    CJsonParser(const char* text, SJsonDocument& document) : document(document), open(document.open), reach(text) {}

    // The members of an object are open elements then.
    SJsonShape& ParseObject(const char* text)
    {
        SJsonShape* shape = &document.shapes.GetEmpty();
        if (std::strcmp(text, "null") != 0)
            parseMembers(skipEmptyChars(text), shape);
        return *shape;
    }

    // So are the elements of an array. The empty text is an empty array.
    void ParseArray(const char* text)
    {
        if (*text != '\0')
            parseElements(skipEmptyChars(text));
    }

private:
    // The first byte that is no white space, which is never the end of the text.
    const char* skipEmptyChars(const char* text)
    {
        if (static_cast<unsigned char>(*text) > ' ')
            return text;
        if (IsWhiteSpace(*text))
            text = skipWhiteSpace(text + 1);
        if (*text == '\0')
            throw CException(__FILE__, __LINE__, "SkipEmptyChars");
        return text;
    }

    // Byte by byte, since the processor foresees how many there are, as it does not with texts and numbers.
    const char* skipWhiteSpace(const char* text)
    {
        const char* const start = text;
        if (isIndentedAlike(text))
            text += indentation.size();
        while (IsWhiteSpace(*text))
            ++text;
        if (text - start > 8)
            indentation = std::string_view(start, static_cast<std::size_t>(text - start) - 1);
        return text;
    }

    // In front of nested values white space is long, and hardly differs from line to line.
    bool isIndentedAlike(const char* text)
    {
        const std::size_t size = indentation.size();
        return size != 0 && reach.Has(text, size) && std::memcmp(text, indentation.data(), size) == 0;
    }

    // The first quote or backslash.
    const char* findQuote(const char* text)
    {
        for (; reach.Has(text, 8); text += 8)
        {
            const std::uint64_t bytes = LoadEight(text);
            if (const std::uint64_t found = MarkBytes(bytes, '"') | MarkBytes(bytes, '\\'); found != 0)
                return text + FirstMarked(found);
        }
        while (*text != '"' && *text != '\\' && *text != '\0')
            ++text;
        return text;
    }

    // From behind the opening quote to behind the closing one. An escaped byte can't close the string.
    const char* parseString(const char* text, std::string_view& raw)
    {
        const char* at = findQuote(text);
        while (*at == '\\' && at[1] != '\0')
            at = findQuote(at + 2);
        if (*at != '"')
            throw CException(__FILE__, __LINE__, "Vellum::ParseString");
        raw = std::string_view(text, static_cast<std::size_t>(at - text));
        return at + 1;
    }

    static bool endsWord(char byte, char terminator) { return byte == ',' || byte == terminator || IsWhiteSpace(byte); }

    // Where a word may end, as at any byte up to the comma, or where the text is near its end.
    const char* findWordEnd(const char* text, char terminator)
    {
        for (; reach.Has(text, 8); text += 8)
        {
            const std::uint64_t bytes = LoadEight(text);
            if (const std::uint64_t found = MarkBytesUpTo(bytes, ',') | MarkBytes(bytes, terminator); found != 0)
                return text + FirstMarked(found);
        }
        return text;
    }

    const char* parseWord(const char* text, char terminator, std::string_view& word)
    {
        const char* at = findWordEnd(text, terminator);
        for (; !endsWord(*at, terminator); ++at)
            if (*at == '\0')
                throw CException(__FILE__, __LINE__, "ParseValue");
        word = std::string_view(text, static_cast<std::size_t>(at - text));
        return at;
    }

    // From the first byte of a value to behind it and the white space that follows. The terminator is the bracket that
    // closes what the value stands in.
    const char* parseValue(const char* text, char terminator)
    {
        std::string_view raw;
        switch (*text)
        {
        case '{':
            text = parseNestedObject(text);
            break;
        case '[':
            text = parseNestedArray(text);
            break;
        case '"':
            text = parseString(text + 1, raw);
            open.push_back(SJsonElement(raw));
            break;
        default:
            text = parseWord(text, terminator, raw);
            open.push_back(raw == "null" ? SJsonElement() : SJsonElement(raw));
        }
        return skipEmptyChars(text);
    }

    const char* parseNestedObject(const char* text)
    {
        const std::size_t first = open.size();
        SJsonShape* shape = &document.shapes.GetEmpty();
        text = parseMembers(text, shape);
        close(first, [&](const SJsonElement* values) { return SJsonElement(SJsonObject{shape, values}); });
        return text;
    }

    const char* parseNestedArray(const char* text)
    {
        const std::size_t first = open.size();
        text = parseElements(text);
        const std::size_t count = open.size() - first;
        close(first, [&](const SJsonElement* elements) { return SJsonElement(JsonElements(elements, count)); });
        return text;
    }

    // Moves the open elements from `first` on to where they belong, in memory of just the size, and makes one of them.
    template <class MakeElement>
    void close(std::size_t first, const MakeElement& makeElement)
    {
        const SJsonElement element = makeElement(document.memory.Copy(open.data() + first, open.size() - first));
        open.resize(first);
        open.push_back(element);
    }

    // From the opening bracket to behind the closing one. The shape becomes that of the members.
    const char* parseMembers(const char* text, SJsonShape*& shape)
    {
        if (*text != '{' || ++depth > MaxDepth)
            throw CException(__FILE__, __LINE__, "Vellum::ParseObject");
        text = skipEmptyChars(text + 1);
        while (*text != '}')
        {
            if (*text != '"')
                throw CException(__FILE__, __LINE__, "Vellum::ParseObject");
            text = parseMember(text + 1, shape);
            if (*text == ',')
                text = skipEmptyChars(text + 1);
        }
        --depth;
        return text + 1;
    }

    // From behind the quote in front of the key.
    const char* parseMember(const char* text, SJsonShape*& shape)
    {
        SJsonShape* const longer = shape->longer;
        const bool isExpected = longer != nullptr && isKeyHere(text, longer->key);
        std::string_view key;
        text = isExpected ? text + longer->key.size() + 1 : parseString(text, key);
        text = skipEmptyChars(text);
        if (*text != ':')
            throw CException(__FILE__, __LINE__, "Vellum::ParseObject");
        text = parseValue(skipEmptyChars(text + 1), '}');
        if (open.back().GetKind() == SJsonElement::Nothing)
            open.pop_back();
        else
            shape = isExpected ? longer : &document.shapes.Lengthen(*shape, key);
        return text;
    }

    // Whether that key, which stands further in front, and the quote behind it stand here too.
    bool isKeyHere(const char* text, std::string_view key)
    {
        return reach.Has(text, key.size() + 8) && BeginAlike(text, key.data(), key.size() + 1);
    }

    const char* parseElements(const char* text)
    {
        if (*text != '[' || ++depth > MaxDepth)
            throw CException(__FILE__, __LINE__, "Vellum::ParseArray");
        text = skipEmptyChars(text + 1);
        if (*text == ',')
            throw CException(__FILE__, __LINE__, "Vellum::ParseArray");
        while (*text != ']')
        {
            text = parseValue(text, ']');
            if (*text != ',')
                continue;
            text = skipEmptyChars(text + 1);
            if (*text == ']')
                throw CException(__FILE__, __LINE__, "Vellum::ParseArray");
        }
        --depth;
        return text + 1;
    }

    SJsonDocument& document;
    std::vector<SJsonElement>& open;
    CTextReach reach;
    std::string_view indentation; // the last long white space but for its last byte, which the next may not have
    std::uint32_t depth = 0;      // of open brackets
};

// ---- Conversion of a raw text to a value. ----

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

// ---- The readers that a client meets. ----

// An element as a value. False for one that isn't there, which is null, and for one of another kind.
template <class T>
bool ReadElement(const SJsonElement* element, T& value, SJsonDocument&)
{
    return element != nullptr && element->GetKind() == SJsonElement::Text && ReadText(element->GetText(), value);
}

bool ReadElement(const SJsonElement* element, ISerializable& value, SJsonDocument& document);
bool ReadElement(const SJsonElement* element, ISerializableContainer& value, SJsonDocument& document);

// The decoded bytes of a text.
BlobRange ReadBlob(const SJsonElement* element, CDecodedBlobs& blobs)
{
    if (element == nullptr || element->GetKind() != SJsonElement::Text)
        return {};
    return blobs.Decode(element->GetText());
}

class CDataReaderJson final : public CReadOperations<CDataReaderJson, IDataReader, const char*>
{
public:
    CDataReaderJson(const SJsonObject& object, SJsonDocument& document)
        : document(document), keys(document.shapes.GetKeys(*object.shape)), values(object.values)
    {
    }

    std::uint32_t GetKeyCount() const override { return keys.GetCount(); }
    const char* GetKey(std::uint32_t index) const override { return keys.GetName(index); }
    BlobRange GetBlob(const char* key) override { return ReadBlob(at(keys.Find(key, expected)), blobs); }

    template <class T>
    bool readValue(const char* key, T& value) const
    {
        return ReadElement(at(keys.Find(key, expected)), value, document);
    }

private:
    const SJsonElement* at(std::uint32_t place) const { return place == CJsonKeys::NoPlace ? nullptr : values + place; }

    SJsonDocument& document;
    CJsonKeys& keys;
    const SJsonElement* values;
    mutable std::uint32_t expected = 0; // the index of the key behind the one found last
    CDecodedBlobs blobs;
};

class CContainerReaderJson final : public CReadOperations<CContainerReaderJson, IContainerReader, std::uint32_t>
{
public:
    CContainerReaderJson(JsonElements elements, SJsonDocument& document) : document(document), elements(elements) {}

    BlobRange GetBlob(std::uint32_t index) override { return ReadBlob(at(index), blobs); }

    template <class T>
    bool readValue(std::uint32_t index, T& value) const
    {
        return ReadElement(at(index), value, document);
    }

private:
    const SJsonElement* at(std::uint32_t index) const { return index < elements.size() ? &elements[index] : nullptr; }

    SJsonDocument& document;
    JsonElements elements;
    CDecodedBlobs blobs;
};

bool ReadElement(const SJsonElement* element, ISerializable& value, SJsonDocument& document)
{
    if (element == nullptr || element->GetKind() != SJsonElement::Object)
        return false;
    CDataReaderJson reader(element->GetObject(), document);
    value.Read(reader);
    return true;
}

bool ReadElement(const SJsonElement* element, ISerializableContainer& value, SJsonDocument& document)
{
    if (element == nullptr || element->GetKind() != SJsonElement::Array)
        return false;
    CContainerReaderJson reader(element->GetElements(), document);
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
    CJsonParser(text, document).ParseArray(text);
    CContainerReaderJson reader(document.open, document);
    root.Read(reader);
}

void CReaderJson::Read(ISerializable& root) const
{
    if (text == nullptr)
        throw CException(__FILE__, __LINE__, "Vellum::CReaderJson::Read");
    const CLocaleScope scope;
    SJsonDocument document;
    SJsonShape& shape = CJsonParser(text, document).ParseObject(text);
    CDataReaderJson reader({&shape, document.open.data()}, document);
    root.Read(reader);
}

} // namespace Vellum
