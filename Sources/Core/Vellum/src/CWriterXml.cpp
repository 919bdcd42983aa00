#include "Vellum/CWriterXml.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <string_view>

#include "Platform/ForcedUnwind.h"

#include "Vellum/CException.h"
#include "Vellum/Encodings.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Vellum/src/Base64Text.h"
#include "Vellum/src/CLocaleScope.h"
#include "Vellum/src/CTextOutput.h"
#include "Vellum/src/DateText.h"
#include "Vellum/src/EscapedText.h"
#include "Vellum/src/KindOperations.h"
#include "Vellum/src/XmlNames.h"

// document := header "<" name namespaces ">" LF item* "</" name ">" LF
// item     := indent "<" name ">" value "</" name ">" LF
//           | indent "<" name ">" LF item* indent "</" name ">" LF       an object or sequence, one TAB deeper inside
// value    := escaped text | number | "true" | "false" | one raw byte
//           | "<![CDATA[" LF base64 LF indent "]]>"                      a blob
// indent   := TAB*
namespace Vellum
{
namespace
{

constexpr int DigitsOfFloat = 9;
constexpr int DigitsOfDouble = 17;

constexpr std::string_view ObjectHeader = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";
constexpr std::string_view SequenceHeader = "<?xml version=\"1.0\"?>\n";
constexpr std::string_view RootNamespaces = " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
                                            " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"";

// What stands for a byte of a text; empty for a byte that stands for itself.
struct SEscape
{
    char text[5];
    unsigned char size;

    constexpr std::string_view Get() const { return {text, size}; }
};

constexpr auto EscapeTable = []
{
    std::array<SEscape, 256> escapes{};
    escapes['&'] = {{'&', 'a', 'm', 'p', ';'}, 5};
    escapes['>'] = {{'&', 'g', 't', ';'}, 4};
    escapes['<'] = {{'&', 'l', 't', ';'}, 4};
    escapes['%'] = {{'&', '#', '3', '7', ';'}, 5};
    escapes['\n'] = {{'&', '#', '1', '0', ';'}, 5};
    escapes['\r'] = {{'&', '#', '1', '3', ';'}, 5};
    return escapes;
}();

struct SEscapes
{
    static constexpr std::size_t MostGrowth = 5;

    static std::uint64_t Mark(std::uint64_t bytes)
    {
        static_assert(('<' | 2) == '>');
        return MarkBytesUpTo(bytes, '\r') | MarkBytes(bytes, '%') | MarkBytes(bytes, '&') |
               MarkBytes(bytes | RepeatByte(2), '>');
    }
    static const SEscape& Find(char byte) { return EscapeTable[static_cast<unsigned char>(byte)]; }
    static bool Has(char byte) { return Find(byte).size != 0; }
    static char* Append(char* to, char byte)
    {
        std::memcpy(to, Find(byte).text, MostGrowth);
        return to + Find(byte).size;
    }
    static void Put(CTextOutput& output, char byte) { output.Put(Find(byte).Get()); }
};

// What has to be converted before anything of its element reaches the stream, since the conversion may fail; the rest
// is passed through.
template <class T>
const T& Convert(const T& value)
{
    return value;
}

std::string Convert(const std::wstring& value) { return Encodings::ToUTF8(value); }
CDateText Convert(const IDateTime& value) { return CDateText(value); }
Base64::CBase64Text Convert(const SBlob& value) { return {value.data, value.size, true}; }

// One nesting level: the fields of an object, or the elements of a sequence.
template <class Interface>
class CWriterXmlBase : public Interface
{
public:
    // `indent` is the number of TABs in front of each line.
    CWriterXmlBase(CTextOutput& output, std::uint32_t indent) : output(output), indent(indent) {}

protected:
    template <class T>
    void writeElement(std::string_view name, const T& value);
    void writeElement(std::string_view name, const ISerializable& value);
    void writeElement(std::string_view name, const ISerializableContainer& value);

private:
    void beginElement(std::string_view name) { output.Put(STabs{indent}, '<', name, '>'); }
    void endElement(std::string_view name)
    {
        output.Put("</", name, ">\n");
        output.Flush();
    }

    template <class Integer>
    void putValue(Integer value)
    {
        output.PutInteger(value);
    }
    void putValue(bool value) { output.PutBool(value); }
    void putValue(signed char value) { output.PutInteger(static_cast<short>(value)); }
    void putValue(unsigned char value) { output.PutInteger(static_cast<unsigned short>(value)); }
    void putValue(float value) { output.PutReal(static_cast<double>(value), DigitsOfFloat); }
    void putValue(double value) { output.PutReal(value, DigitsOfDouble); }
    void putValue(char value) { output.Put(value); }
    void putValue(const std::string& value) { PutEscaped<SEscapes>(output, value); }
    void putValue(const CDateText& value) { output.Put(value.Get()); }
    void putValue(const Base64::CBase64Text& value)
    {
        output.Put("<![CDATA[\n", value.Get(), '\n', STabs{indent}, "]]>");
    }

    CTextOutput& output;
    std::uint32_t indent;
};

class CDataWriterXml final : public CWriteOperations<CDataWriterXml, CWriterXmlBase<IDataWriter>, const char*>
{
public:
    using CWriteOperation::CWriteOperation;

    template <class T>
    void writeValue(const char* key, const T& value)
    {
        writeElement(key, value);
    }
};

class CContainerWriterXml final : public CWriteOperations<CContainerWriterXml, CWriterXmlBase<IContainerWriter>>
{
public:
    using CWriteOperation::CWriteOperation;

    template <class T>
    void writeValue(const T& value)
    {
        writeElement(SequenceElementName, value);
    }
    void writeValue(const ISerializable& value) { writeElement(ToElementName(value.GetTypeName()), value); }
    void writeValue(const ISerializableContainer& value) { writeElement(ToElementName(value.GetTypeName()), value); }
};

// The lines of an object or a sequence. `indent` is that of its tags.
template <class LevelWriter, class Client>
void WriteLevel(std::string_view name, std::string_view attributes, const Client& value, CTextOutput& output,
                std::uint32_t indent)
{
    output.Put(STabs{indent}, '<', name, attributes, ">\n");
    output.Flush();

    LevelWriter writer(output, indent + 1);
    value.Write(writer);

    output.Put(STabs{indent}, "</", name, ">\n");
    output.Flush();
}

template <class Interface>
template <class T>
void CWriterXmlBase<Interface>::writeElement(std::string_view name, const T& value)
{
    decltype(auto) converted = Convert(value);
    beginElement(name);
    putValue(converted);
    endElement(name);
}

template <class Interface>
void CWriterXmlBase<Interface>::writeElement(std::string_view name, const ISerializable& value)
{
    WriteLevel<CDataWriterXml>(name, {}, value, output, indent);
}

template <class Interface>
void CWriterXmlBase<Interface>::writeElement(std::string_view name, const ISerializableContainer& value)
{
    WriteLevel<CContainerWriterXml>(name, {}, value, output, indent);
}

template <class LevelWriter, class Client>
void WriteDocument(std::string_view header, const Client& root, std::ostringstream& stream)
try
{
    const CLocaleScope scope;
    const std::string name = ToElementName(root.GetTypeName());
    CTextOutput output(stream);
    output.Put(header);
    WriteLevel<LevelWriter>(name, RootNamespaces, root, output, 0);
}
catch (...)
{
    Platform::PassForcedUnwind();
    throw CException(__FILE__, __LINE__, "Vellum::CWriterXml::Write");
}

} // namespace

CWriterXml::CWriterXml(std::ostringstream& stream) : stream(&stream)
{
    stream.precision(16);
    stream.setf(std::ios_base::boolalpha);
}

CWriterXml::CWriterXml(const CWriterXml& other) = default;
CWriterXml::~CWriterXml() = default;

void CWriterXml::Write(const ISerializableContainer& root)
{
    WriteDocument<CContainerWriterXml>(SequenceHeader, root, *stream);
}

void CWriterXml::Write(const ISerializable& root) { WriteDocument<CDataWriterXml>(ObjectHeader, root, *stream); }

} // namespace Vellum
