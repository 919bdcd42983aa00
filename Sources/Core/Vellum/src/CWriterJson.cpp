#include "Vellum/CWriterJson.h"

#include <array>
#include <concepts>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/ForcedUnwind.h"
#include "Platform/Utf8.h"

#include "Vellum/CException.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Vellum/src/Base64Text.h"
#include "Vellum/src/CLocaleScope.h"
#include "Vellum/src/CTextOutput.h"
#include "Vellum/src/DateText.h"
#include "Vellum/src/EscapedText.h"
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
constexpr auto EscapeLetters = []
{
    std::array<char, 256> letters{};
    letters['\b'] = 'b';
    letters['\t'] = 't';
    letters['\n'] = 'n';
    letters['\f'] = 'f';
    letters['\r'] = 'r';
    letters['"'] = '"';
    letters['\\'] = '\\';
    return letters;
}();

struct SEscapes
{
    static constexpr std::size_t MostGrowth = 2;

    static std::uint64_t Mark(std::uint64_t bytes)
    {
        return MarkBytesUpTo(bytes, '\r') | MarkBytes(bytes, '"') | MarkBytes(bytes, '\\');
    }
    static char Letter(char byte) { return EscapeLetters[static_cast<unsigned char>(byte)]; }
    static bool Has(char byte) { return Letter(byte) != 0; }
    static char* Append(char* to, char byte)
    {
        to[0] = '\\';
        to[1] = Letter(byte);
        return to + 2;
    }
    static void Put(CTextOutput& output, char byte) { output.Put('\\', Letter(byte)); }
};

void QuoteText(CTextOutput& output, std::string_view text)
{
    output.Put('"');
    PutEscaped<SEscapes>(output, text);
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
Base64::CBase64Text Convert(const SBlob& value) { return {value.data, value.size, false}; }
CDateText Convert(const IDateTime& value) { return CDateText(value); }

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
    // Puts what stands in front of an item, and pieces of the item.
    template <class... Pieces>
    void beginItem(const Pieces&... pieces)
    {
        if (std::exchange(hasItems, true))
            output.Put(",\n", STabs{indent}, pieces...);
        else
            output.Put('\t', pieces...);
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
    void putValue(const Base64::CBase64Text& value) { output.Put('"', value.Get(), '"'); }
    void putValue(const CDateText& value) { output.Put('"', value.Get(), '"'); }

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

constexpr char BracketOf(const ISerializable&) { return '{'; }
constexpr char BracketOf(const ISerializableContainer&) { return '['; }

// What follows the opening bracket of an object or a sequence. `indent` is that of the items around the brackets.
void WriteItems(const ISerializable& value, CTextOutput& output, std::uint32_t indent, bool showPoint);
void WriteItems(const ISerializableContainer& value, CTextOutput& output, std::uint32_t indent, bool showPoint);

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
        beginField(key);
        putValue(converted);
        output.Flush();
    }
    void writeValue(const char* key, const ISerializable& value) { writeNested(key, value); }
    void writeValue(const char* key, const ISerializableContainer& value) { writeNested(key, value); }

private:
    void beginField(std::string_view key) { beginItem('"', key, "\":"); }

    template <class Client>
    void writeNested(const char* key, const Client& value)
    {
        beginField(key);
        output.Put('\n', STabs{indent}, BracketOf(value));
        WriteItems(value, output, indent, showPoint);
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
    void writeValue(const ISerializable& value) { writeNested(value); }
    void writeValue(const ISerializableContainer& value) { writeNested(value); }

private:
    template <class Client>
    void writeNested(const Client& value)
    {
        beginItem(BracketOf(value));
        WriteItems(value, output, indent, showPoint);
    }
};

template <class LevelWriter, class Client>
void WriteLevel(const Client& value, CTextOutput& output, std::uint32_t indent, bool showPoint, char closingBracket)
{
    output.Flush();
    LevelWriter writer(output, indent + 1, showPoint);
    value.Write(writer);
    output.Put('\n', STabs{indent}, closingBracket);
    output.Flush();
}

void WriteItems(const ISerializable& value, CTextOutput& output, std::uint32_t indent, bool showPoint)
{
    WriteLevel<CDataWriterJson>(value, output, indent, showPoint, '}');
}

void WriteItems(const ISerializableContainer& value, CTextOutput& output, std::uint32_t indent, bool showPoint)
{
    WriteLevel<CContainerWriterJson>(value, output, indent, showPoint, ']');
}

template <class Root>
void WriteDocument(const Root& root, std::ostringstream& stream, bool showPoint)
{
    try
    {
        const CLocaleScope scope; // inside the try: the scope is left before the exception below is made
        CTextOutput output(stream);
        output.Put(BracketOf(root));
        WriteItems(root, output, 0, showPoint);
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
