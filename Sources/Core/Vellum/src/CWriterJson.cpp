#include "Vellum/CWriterJson.h"

#include <concepts>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/ForcedUnwind.h"
#include "Platform/Utf8.h"

#include "Groundwork/CbDateTime.h"

#include "Vellum/Base64.h"
#include "Vellum/CException.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Vellum/src/CLocaleScope.h"
#include "Vellum/src/CTextOutput.h"
#include "Vellum/src/IJsonTokens.h"
#include "Vellum/src/KindOperations.h"

// Layout, where → is a TAB and each line ends with a line feed:
//
//   {→"name":"x",          the first item of a level follows its bracket after one TAB, at any depth
//   →"inner":              a nested object or sequence begins on a line of its own ...
//   →{→"a":1,
//   →→"b":"two"            later items at the indent of their level
//   →},
//   →"rows":
//   →[→{→"a":1             ... except as an element of a sequence
//   →→},
//   →→2.5000000000000000
//   →],
//   →"none":
//   →[
//   →]
//   }
namespace Vellum
{
namespace
{

constexpr int DigitsOfFloat = 9;
constexpr int DigitsOfDouble = 17;

// The letter behind the backslash, or 0 for a byte that stands as it is.
constexpr char EscapeLetter(char byte)
{
    switch (byte)
    {
    case '\b':
        return 'b';
    case '\t':
        return 't';
    case '\n':
        return 'n';
    case '\f':
        return 'f';
    case '\r':
        return 'r';
    case '"':
    case '\\':
        return byte;
    default:
        return 0;
    }
}

// Whether eight bytes may hold one with an escape: a byte below 0x20, a quote or a backslash. The lowest such byte is
// always noticed; see "haszero" and "hasless" in Anderson's Bit Twiddling Hacks.
bool MayNeedEscape(const char* bytes)
{
    constexpr std::uint64_t Ones = 0x0101010101010101;
    constexpr std::uint64_t Highs = 0x8080808080808080;
    std::uint64_t block = 0;
    std::memcpy(&block, bytes, sizeof block);
    const std::uint64_t control = (block - Ones * 0x20) & ~block;
    const std::uint64_t quote = ((block ^ (Ones * '"')) - Ones) & ~(block ^ (Ones * '"'));
    const std::uint64_t backslash = ((block ^ (Ones * '\\')) - Ones) & ~(block ^ (Ones * '\\'));
    return ((control | quote | backslash) & Highs) != 0;
}

// Number of bytes in front that need no escape.
std::size_t CountPlain(std::string_view text)
{
    std::size_t count = 0;
    while (true)
    {
        const std::size_t stop = count + sizeof(std::uint64_t);
        if (stop <= text.size() && !MayNeedEscape(text.data() + count))
        {
            count = stop;
            continue;
        }
        for (; count < stop && count < text.size(); ++count)
            if (EscapeLetter(text[count]) != 0)
                return count;
        if (count == text.size())
            return count;
    }
}

void QuoteText(CTextOutput& output, std::string_view text)
{
    output.Put('"');
    while (true)
    {
        const std::size_t plain = CountPlain(text);
        output.Put(text.substr(0, plain));
        if (plain == text.size())
            break;
        output.Put('\\');
        output.Put(EscapeLetter(text[plain]));
        text.remove_prefix(plain + 1);
    }
    output.Put('"');
}

// What has to be converted before anything of its item reaches the stream, since the conversion may fail; the rest is
// passed through.
template <class T>
const T& Convert(const T& value)
{
    return value;
}

std::string Convert(const std::wstring& value) { return Platform::Utf16ToUtf8(std::wstring_view(value.c_str())); }

std::string Convert(const SBlob& value) { return Base64::Encode(value.data, value.size, false); }
std::string Convert(const IDateTime& value) { return CbDateTime(value).ToString("Y-m-dTH:i:s", false); }

// One nesting level: the items of one pair of brackets.
template <class Interface>
class CWriterJsonBase : public Interface
{
public:
    // `indent` is the number of TABs in front of an item.
    CWriterJsonBase(CTextOutput& output, std::uint32_t indent, bool showPoint)
        : output(output), indent(indent), showPoint(showPoint)
    {
    }

protected:
    void beginItem()
    {
        if (!std::exchange(hasItems, true))
            return output.Put('\t');
        output.Put(std::string_view(",\n"));
        output.PutTabs(indent);
    }

    template <std::integral Integer>
    void putValue(Integer value)
    {
        output.PutInteger(value);
    }
    void putValue(bool value) { output.PutBool(value); }
    void putValue(signed char value) { output.PutInteger(static_cast<short>(value)); }
    void putValue(unsigned char value) { output.PutInteger(static_cast<unsigned short>(value)); }
    void putValue(float value) { putReal(static_cast<double>(value), DigitsOfFloat); }
    void putValue(double value) { putReal(value, DigitsOfDouble); }
    void putValue(char value);
    void putValue(const std::string& value) { QuoteText(output, value.c_str()); }
    void putValue(std::string_view token) { output.Put(token); }

    CTextOutput& output;
    std::uint32_t indent;
    bool showPoint;
    bool hasItems = false;

private:
    void putReal(double value, int precision)
    {
        output.SetShowPoint(showPoint);
        output.PutReal(value, precision);
    }
};

// One raw byte between quotes, control bytes included, since a reader takes the first byte of the raw text. The three
// that would break the quotes are told apart by what follows: \" and \\ and nothing at all.
template <class Interface>
void CWriterJsonBase<Interface>::putValue(char value)
{
    output.Put('"');
    if (value == '"' || value == '\\')
        output.Put('\\');
    if (value != '\0')
        output.Put(value);
    output.Put('"');
}

// The key is null for the root and for an element. `indent` is that of the items of the level around the brackets.
void WriteNestedObject(const char* key, const ISerializable& value, CTextOutput& output, std::uint32_t indent,
                       bool showPoint);
void WriteNestedContainer(const char* key, const ISerializableContainer& value, CTextOutput& output,
                          std::uint32_t indent, bool showPoint);

void PutKey(CTextOutput& output, const char* key)
{
    output.Put('"');
    output.Put(std::string_view(key));
    output.Put(std::string_view("\":"));
}

class CDataWriterJson final : public CWriteOperations<CDataWriterJson, CWriterJsonBase<IDataWriter>, const char*>,
                              public IJsonTokens
{
public:
    using CWriteOperation::CWriteOperation;

    void WriteToken(const char* key, std::string_view token) override { writeValue(key, token); }

    template <class T>
    void writeValue(const char* key, const T& value)
    {
        decltype(auto) converted = Convert(value);
        beginItem();
        PutKey(output, key);
        putValue(converted);
        output.Flush();
    }
    void writeValue(const char* key, const ISerializable& value)
    {
        beginItem();
        WriteNestedObject(key, value, output, indent, showPoint);
    }
    void writeValue(const char* key, const ISerializableContainer& value)
    {
        beginItem();
        WriteNestedContainer(key, value, output, indent, showPoint);
    }
};

class CContainerWriterJson final : public CWriteOperations<CContainerWriterJson, CWriterJsonBase<IContainerWriter>>,
                                   public IJsonTokens
{
public:
    using CWriteOperation::CWriteOperation;

    void WriteToken(const char*, std::string_view token) override { writeValue(token); }

    template <class T>
    void writeValue(const T& value)
    {
        decltype(auto) converted = Convert(value);
        beginItem();
        putValue(converted);
        output.Flush();
    }
    void writeValue(const ISerializable& value)
    {
        beginItem();
        WriteNestedObject(nullptr, value, output, indent, showPoint);
    }
    void writeValue(const ISerializableContainer& value)
    {
        beginItem();
        WriteNestedContainer(nullptr, value, output, indent, showPoint);
    }
};

template <class LevelWriter, class Client>
void WriteNested(const char* key, const Client& value, CTextOutput& output, std::uint32_t indent, bool showPoint,
                 std::string_view brackets)
{
    if (key != nullptr)
    {
        PutKey(output, key);
        output.Put('\n');
        output.PutTabs(indent);
    }
    output.Put(brackets.front());
    output.Flush();

    LevelWriter writer(output, indent + 1, showPoint);
    value.Write(writer);

    output.Put('\n');
    output.PutTabs(indent);
    output.Put(brackets.back());
    output.Flush();
}

void WriteNestedObject(const char* key, const ISerializable& value, CTextOutput& output, std::uint32_t indent,
                       bool showPoint)
{
    WriteNested<CDataWriterJson>(key, value, output, indent, showPoint, "{}");
}

void WriteNestedContainer(const char* key, const ISerializableContainer& value, CTextOutput& output,
                          std::uint32_t indent, bool showPoint)
{
    WriteNested<CContainerWriterJson>(key, value, output, indent, showPoint, "[]");
}

void WriteRoot(const ISerializable& root, CTextOutput& output, bool showPoint)
{
    WriteNestedObject(nullptr, root, output, 0, showPoint);
}
void WriteRoot(const ISerializableContainer& root, CTextOutput& output, bool showPoint)
{
    WriteNestedContainer(nullptr, root, output, 0, showPoint);
}

template <class Root>
void WriteDocument(const Root& root, std::ostringstream& stream, bool showPoint)
{
    try
    {
        const CLocaleScope scope; // inside the try: the scope is left before the exception below is made
        CTextOutput output(stream);
        WriteRoot(root, output, showPoint);
        output.Put('\n');
        output.Flush();
    }
    catch (...)
    {
        Platform::PassForcedUnwind();
        throw CException(__FILE__, __LINE__, "Vellum::CWriterJson::Write");
    }
}

} // namespace

CWriterJson::CWriterJson(std::ostringstream& stream) : stream(stream) {}
CWriterJson::CWriterJson(const CWriterJson& other) = default;
CWriterJson::~CWriterJson() = default;

void CWriterJson::SetShowPoint(bool value) { showPoint = value; }

void CWriterJson::Write(const ISerializableContainer& root) { WriteDocument(root, stream, showPoint); }

void CWriterJson::Write(const ISerializable& root) { WriteDocument(root, stream, showPoint); }

} // namespace Vellum
