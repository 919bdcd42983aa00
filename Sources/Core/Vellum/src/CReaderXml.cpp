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

#include "Vellum/CException.h"
#include "Vellum/IContainerReader.h"
#include "Vellum/IDataReader.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Vellum/src/CDecodedBlobs.h"
#include "Vellum/src/CLocaleScope.h"
#include "Vellum/src/CXmlNode.h"
#include "Vellum/src/KindOperations.h"
#include "Vellum/src/NumberText.h"
#include "Vellum/src/XmlNames.h"
#include "Vellum/src/XmlParser.h"
#include "Vellum/src/XmlText.h"

namespace Vellum
{
namespace
{

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

// The text is zero-terminated.
bool ConvertText(std::string_view text, IDateTime& value)
{
    value = CbDateTime(text.data());
    return true;
}

// Nothing for the empty text.
BlobRange DecodeBlob(std::string_view text, CDecodedBlobs& blobs)
{
    return text.empty() ? BlobRange() : blobs.Decode(text);
}

// The fields of one element, which may be the empty one.
class CDataReaderXml final : public CReadOperations<CDataReaderXml, IDataReader, const char*>
{
public:
    explicit CDataReaderXml(CXmlElement element) : element(element) {}

    std::uint32_t GetKeyCount() const override { return element.GetChildCount(); }
    const char* GetKey(std::uint32_t index) const override { return element.GetChild(index).GetName(); }
    BlobRange GetBlob(const char* key) override { return DecodeBlob(readFieldText(find(key)), blobs); }

    template <class T>
    bool readValue(const char* key, T& value) const
    {
        const CXmlElement child = find(key);
        return !child.IsEmpty() && ConvertText(readFieldText(child), value);
    }

    // These two are the first text alone, as it stands.
    bool readValue(const char* key, bool& value) const { return readFirstText(key, value); }
    bool readValue(const char* key, IDateTime& value) const { return readFirstText(key, value); }

    bool readValue(const char* key, ISerializable& value) const;
    bool readValue(const char* key, ISerializableContainer& value) const;

private:
    CXmlElement find(const char* key) const { return element.GetChild(key, last); }
    static std::string_view readFieldText(CXmlElement child) { return TrimSpace(GetValueText(child)); }

    template <class T>
    bool readFirstText(const char* key, T& value) const
    {
        const CXmlElement child = find(key);
        return !child.IsEmpty() && ConvertText(child.GetFirstText(), value);
    }

    CXmlElement element;
    mutable CXmlElement last; // the field found last
    CDecodedBlobs blobs;
};

// The child elements of one element, which may be the empty one.
class CContainerReaderXml final : public CReadOperations<CContainerReaderXml, IContainerReader, std::uint32_t>
{
public:
    explicit CContainerReaderXml(CXmlElement element) : element(element) {}

    BlobRange GetBlob(std::uint32_t index) override
    {
        const CXmlElement child = find(index);
        return child.IsEmpty() ? BlobRange() : DecodeBlob(TrimSpace(readValue(child)), blobs);
    }

    template <class T>
    bool readValue(std::uint32_t index, T& value) const
    {
        const CXmlElement child = find(index);
        return !child.IsEmpty() && ConvertText(readValue(child), value);
    }

    bool readValue(std::uint32_t index, ISerializable& value) const;
    bool readValue(std::uint32_t index, ISerializableContainer& value) const;

private:
    // Elements are mostly asked for one after the other.
    CXmlElement find(std::uint32_t index) const
    {
        if (index >= element.GetChildCount())
            return {};
        const bool isNext = !last.IsEmpty() && index == lastIndex + 1;
        last = isNext ? last.GetNext() : index == 0 ? element.GetFirstChild() : element.GetChild(index);
        lastIndex = index;
        return last;
    }

    static std::string_view readValue(CXmlElement child)
    {
        const SXmlName& name = *child.GetSharedName();
        if (std::string_view(name.text, name.length) != SequenceElementName)
            throw CException(__FILE__, __LINE__, "Vellum::CContainerReaderXml::readValue");
        return GetValueText(child);
    }

    CXmlElement element;
    mutable CXmlElement last; // the child found last, and its index
    mutable std::uint32_t lastIndex = 0;
    CDecodedBlobs blobs;
};

// Calls the client with a reader for an element. False for the empty one.
template <class Reader, class Client>
bool ReadNested(CXmlElement child, Client& value)
{
    if (child.IsEmpty())
        return false;
    Reader reader(child);
    value.Read(reader);
    return true;
}

bool CDataReaderXml::readValue(const char* key, ISerializable& value) const
{
    return ReadNested<CDataReaderXml>(find(key), value);
}

bool CDataReaderXml::readValue(const char* key, ISerializableContainer& value) const
{
    return ReadNested<CContainerReaderXml>(find(key), value);
}

bool CContainerReaderXml::readValue(std::uint32_t index, ISerializable& value) const
{
    return ReadNested<CDataReaderXml>(find(index), value);
}

bool CContainerReaderXml::readValue(std::uint32_t index, ISerializableContainer& value) const
{
    return ReadNested<CContainerReaderXml>(find(index), value);
}

// The root is looked for below the node that the parser returns, so behind the declaration. What isn't found, or was
// rejected, is the empty node, on which every Read finds nothing.
template <class Reader, class Client>
void ReadDocument(const char* text, Client& root)
{
    const CLocaleScope scope;
    const CXmlNode tree = ParseXmlText(text);
    const CXmlElement& top = tree;
    Reader reader(top.GetChild(ToElementName(root.GetTypeName()).c_str()));
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

} // namespace Vellum
