#include "Vellum/CWriterXml.h"

#include <array>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>

#include "Platform/ForcedUnwind.h"

#include "Groundwork/CbDateTime.h"

#include "Vellum/Base64.h"
#include "Vellum/CException.h"
#include "Vellum/Encodings.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Vellum/src/CLocaleScope.h"
#include "Vellum/src/CTextOutput.h"
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
constexpr std::string_view EscapeOf(char byte)
{
    switch (byte)
    {
    case '&':
        return "&amp;";
    case '>':
        return "&gt;";
    case '<':
        return "&lt;";
    case '%':
        return "&#37;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    default:
        return {};
    }
}

constexpr std::array<bool, 256> Escaped = []
{
    std::array<bool, 256> escaped{};
    for (unsigned byte = 0; byte < escaped.size(); ++byte)
        escaped[byte] = !EscapeOf(static_cast<char>(byte)).empty();
    return escaped;
}();

void EscapeText(CTextOutput& output, std::string_view text)
{
    std::size_t plain = 0; // first byte that hasn't been put
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        if (!Escaped[static_cast<unsigned char>(text[at])])
            continue;
        output.Put(text.substr(plain, at - plain));
        output.Put(EscapeOf(text[at]));
        plain = at + 1;
    }
    output.Put(text.substr(plain));
}

struct SBase64
{
    std::string text;
};

// What has to be converted before anything of its element reaches the stream, since the conversion may fail; the rest
// is passed through.
template <class T>
const T& Convert(const T& value)
{
    return value;
}

std::string Convert(const std::wstring& value) { return Encodings::ToUTF8(value); }
std::string Convert(const IDateTime& value) { return CbDateTime(value).ToString("Y-m-dTH:i:s", false); }
SBase64 Convert(const SBlob& value) { return {Base64::Encode(value.data, value.size, true)}; }

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
    void putValue(const std::string& value) { EscapeText(output, value); }
    void putValue(const SBase64& value);

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
    output.PutTabs(indent);
    output.Put('<');
    output.Put(name);
    output.Put(attributes);
    output.Put(std::string_view(">\n"));
    output.Flush();

    LevelWriter writer(output, indent + 1);
    value.Write(writer);

    output.PutTabs(indent);
    output.Put(std::string_view("</"));
    output.Put(name);
    output.Put(std::string_view(">\n"));
    output.Flush();
}

template <class Interface>
template <class T>
void CWriterXmlBase<Interface>::writeElement(std::string_view name, const T& value)
{
    decltype(auto) converted = Convert(value);
    output.PutTabs(indent);
    output.Put('<');
    output.Put(name);
    output.Put('>');
    putValue(converted);
    output.Put(std::string_view("</"));
    output.Put(name);
    output.Put(std::string_view(">\n"));
    output.Flush();
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

template <class Interface>
void CWriterXmlBase<Interface>::putValue(const SBase64& value)
{
    output.Put(std::string_view("<![CDATA[\n"));
    output.Put(value.text);
    output.Put('\n');
    output.PutTabs(indent);
    output.Put(std::string_view("]]>"));
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
