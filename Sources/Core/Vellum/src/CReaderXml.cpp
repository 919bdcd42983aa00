#include "Vellum/CReaderXml.h"

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/Utf8.h"

#include "Groundwork/CbArray.h"
#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbMapEx.h"

#include "Vellum/CException.h"
#include "Vellum/IContainerReader.h"
#include "Vellum/IDataReader.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Vellum/src/Base64Text.h"
#include "Vellum/src/CLocaleScope.h"
#include "Vellum/src/CXmlNode.h"
#include "Vellum/src/KindOperations.h"
#include "Vellum/src/NumberText.h"
#include "Vellum/src/WhiteSpace.h"
#include "Vellum/src/XmlNames.h"
#include "Vellum/src/XmlParser.h"

namespace Vellum
{
namespace
{

// The first text of an element, or the empty text.
const char* GetFirstText(const CXmlNode& node) { return node.GetTextCount() == 0 ? "" : node.GetText(0); }

// ... or else the first section that was taken as it stands.
const char* GetValueText(const CXmlNode& node)
{
    return node.GetTextCount() == 0 && node.GetClearCount() != 0 ? node.GetClear(0).value : GetFirstText(node);
}

std::string_view TrimSpace(std::string_view text)
{
    const auto begin = std::find_if_not(text.begin(), text.end(), IsWhiteSpace);
    const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), IsWhiteSpace).base();
    return {begin, end};
}

// A text to a value. False, with the value as it was, for what is no bool.
template <std::integral Integer>
bool ConvertText(std::string_view text, Integer& value)
{
    value = static_cast<Integer>(Conversion::ViewToInt(text));
    return true;
}

template <std::floating_point Real>
bool ConvertText(std::string_view text, Real& value)
{
    value = static_cast<Real>(Conversion::ViewToDouble(text));
    return true;
}

bool ConvertText(std::string_view text, bool& value)
{
    const bool isTrue = text == "true";
    if (!isTrue && text != "false")
        return false;
    value = isTrue;
    return true;
}

bool ConvertText(std::string_view text, char& value)
{
    value = text.empty() ? '\0' : text.front();
    return true;
}

bool ConvertText(std::string_view text, std::string& value)
{
    value.assign(text);
    return true;
}

bool ConvertText(std::string_view text, std::wstring& value)
{
    value = Platform::Utf8ToUtf16(text);
    return true;
}

bool ConvertText(const char* text, IDateTime& value)
{
    value = CbDateTime(text);
    return true;
}

// Decodes the text of a blob into the reader's store.
template <class Key, class KeyView>
BlobRange DecodeBlob(CbMapEx<Key, CbArray<unsigned char>>& blobs, const KeyView& key, std::string_view text)
{
    if (text.empty())
        return {};
    CbArray<unsigned char> bytes(Base64::GetDecodedSizeOf(text));
    Base64::DecodeText(text, bytes.GetData(), bytes.GetSize());
    const CbArray<unsigned char>& kept = blobs.FindOrEmplace(key, std::move(bytes)).first->value;
    return {kept.GetData(), kept.GetEnd()};
}

// The fields of one element, which may be the empty node.
class CDataReaderXml final : public CReadOperations<CDataReaderXml, IDataReader, const char*>
{
public:
    explicit CDataReaderXml(CXmlNode node) : node(std::move(node)) {}

    std::uint32_t GetKeyCount() const override { return node.GetChildCount(); }
    const char* GetKey(std::uint32_t index) const override { return node.GetChild(index).GetName(); }
    BlobRange GetBlob(const char* key) override;

    template <class T>
    bool readValue(const char* key, T& value) const
    {
        const CXmlNode child = node.GetChild(key);
        return !child.IsEmpty() && ConvertText(readFieldText(child), value);
    }

    // These two are the first text alone, as it stands.
    bool readValue(const char* key, bool& value) const { return readFirstText(key, value); }
    bool readValue(const char* key, IDateTime& value) const { return readFirstText(key, value); }

    bool readValue(const char* key, ISerializable& value) const;
    bool readValue(const char* key, ISerializableContainer& value) const;

private:
    static std::string_view readFieldText(const CXmlNode& child) { return TrimSpace(GetValueText(child)); }

    template <class T>
    bool readFirstText(const char* key, T& value) const
    {
        const CXmlNode child = node.GetChild(key);
        return !child.IsEmpty() && ConvertText(GetFirstText(child), value);
    }

    CXmlNode node;
    CbMapEx<std::string, CbArray<unsigned char>> blobs{128u, 4u}; // most objects have few, if any
};

// The child elements of one element, which may be the empty node.
class CContainerReaderXml final : public CReadOperations<CContainerReaderXml, IContainerReader, std::uint32_t>
{
public:
    explicit CContainerReaderXml(CXmlNode node) : node(std::move(node)) {}

    BlobRange GetBlob(std::uint32_t index) override;

    template <class T>
    bool readValue(std::uint32_t index, T& value) const
    {
        const CXmlNode element = node.GetChild(index);
        return !element.IsEmpty() && ConvertText(readValue(element), value);
    }

    bool readValue(std::uint32_t index, ISerializable& value) const;
    bool readValue(std::uint32_t index, ISerializableContainer& value) const;

private:
    static const char* readValue(const CXmlNode& element)
    {
        if (element.GetName() != SequenceElementName)
            throw CException(__FILE__, __LINE__, "Vellum::CContainerReaderXml::readValue");
        return GetValueText(element);
    }

    CXmlNode node;
    CbMapEx<unsigned int, CbArray<unsigned char>> blobs{128u, 4u};
};

// Calls the client with a reader for an element. False for the empty node.
template <class Reader, class Client>
bool ReadNested(CXmlNode child, Client& value)
{
    if (child.IsEmpty())
        return false;
    Reader reader(std::move(child));
    value.Read(reader);
    return true;
}

BlobRange CDataReaderXml::GetBlob(const char* key)
{
    if (const auto* const found = blobs.Find(key))
        return {found->value.GetData(), found->value.GetEnd()};
    return DecodeBlob(blobs, std::string_view(key), readFieldText(node.GetChild(key)));
}

bool CDataReaderXml::readValue(const char* key, ISerializable& value) const
{
    return ReadNested<CDataReaderXml>(node.GetChild(key), value);
}

bool CDataReaderXml::readValue(const char* key, ISerializableContainer& value) const
{
    return ReadNested<CContainerReaderXml>(node.GetChild(key), value);
}

BlobRange CContainerReaderXml::GetBlob(std::uint32_t index)
{
    if (const auto* const found = blobs.Find(index))
        return {found->value.GetData(), found->value.GetEnd()};
    const CXmlNode element = node.GetChild(index);
    return element.IsEmpty() ? BlobRange() : DecodeBlob(blobs, index, TrimSpace(readValue(element)));
}

bool CContainerReaderXml::readValue(std::uint32_t index, ISerializable& value) const
{
    return ReadNested<CDataReaderXml>(node.GetChild(index), value);
}

bool CContainerReaderXml::readValue(std::uint32_t index, ISerializableContainer& value) const
{
    return ReadNested<CContainerReaderXml>(node.GetChild(index), value);
}

// The root is looked for below the node that the parser returns, so behind the declaration. What isn't found, or was
// rejected, is the empty node, on which every Read finds nothing.
template <class Reader, class Client>
void ReadDocument(const char* text, Client& root)
{
    const CLocaleScope scope;
    CXmlNode tree = ParseXmlText(text);
    tree = tree.GetChild(ToElementName(root.GetTypeName()).c_str());
    Reader reader(std::move(tree));
    root.Read(reader);
}

} // namespace

CReaderXml::CReaderXml(const char* text) : text(text) {}
CReaderXml::CReaderXml(const std::string& text) : text(text.c_str()) {}
CReaderXml::CReaderXml(std::string&& text)
    : kept(std::make_shared<const std::string>(std::move(text))), text(kept->c_str())
{
}
CReaderXml::CReaderXml(const CReaderXml& other) = default;
CReaderXml& CReaderXml::operator=(const CReaderXml& other) = default;
CReaderXml::~CReaderXml() = default;

void CReaderXml::Read(ISerializableContainer& root) const { ReadDocument<CContainerReaderXml>(text, root); }
void CReaderXml::Read(ISerializable& root) const { ReadDocument<CDataReaderXml>(text, root); }

SXmlOutcome CReaderXml::Check() const
{
    SXmlParseOutcome parse{};
    const bool hasTree = !ParseXmlText(text, &parse).IsEmpty();
    if (parse.error == XmlOk)
        return {parse.error, GetXmlErrorName(parse.error), 0, 0, hasTree};
    const std::string_view before(text, static_cast<std::size_t>(parse.position));
    const auto line = static_cast<std::uint32_t>(std::count(before.begin(), before.end(), '\n')) + 1;
    const auto column = static_cast<std::uint32_t>(before.size() - (before.rfind('\n') + 1)) + 1; // npos + 1 is 0
    return {parse.error, GetXmlErrorName(parse.error), line, column, hasTree};
}

} // namespace Vellum
