#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "Groundwork/CbDateTime.h"

#include "Vellum/CDocumentException.h"
#include "Vellum/CReaderXml.h"
#include "Vellum/CValue.h"

#include "Vellum/src/CXmlNode.h"
#include "Vellum/src/KeyRules.h"
#include "Vellum/src/XmlNames.h"
#include "Vellum/src/XmlParser.h"
#include "Vellum/src/XmlText.h"

// What an element is isn't told by a document. These signs tell it of all that CWriterXml makes, but of what is empty
// and of a sequence of objects that are all of other types:
//
//   no element in it      a text, which is the whole value of an element that is empty, too
//   `elt` in it           a sequence
//   elements in it, of    a sequence of objects; their names are their types
//   which two are alike
//   other elements in it  an object; their names are its keys

namespace Vellum
{
namespace
{

bool HasChildren(const CXmlNode& node) { return node.GetChildCount() != 0; }

std::vector<CXmlNode> GetElements(const CXmlNode& node)
{
    std::vector<CXmlNode> elements;
    for (std::uint32_t index = 0; index < node.GetChildCount(); ++index)
        if (!node.GetChild(index).IsDeclaration())
            elements.push_back(node.GetChild(index));
    return elements;
}

bool LooksLikeSequence(const std::vector<CXmlNode>& elements)
{
    if (std::ranges::any_of(elements, [](const CXmlNode& node) { return node.GetName() == SequenceElementName; }))
        return true;
    std::vector<std::string> names;
    for (const CXmlNode& element : elements)
        if (HasChildren(element) || element.GetTextCount() + element.GetClearCount() == 0)
            names.push_back(FoldKey(element.GetName()));
    if (names.size() != elements.size())
        return false;
    std::ranges::sort(names);
    return std::ranges::adjacent_find(names) != names.end();
}

// The reverse of ToElementName, for names of types of C++.
std::string ToTypeName(std::string_view element)
{
    std::string name;
    for (const char letter : element)
        name += letter == '-' ? std::string("::") : std::string(1, letter);
    return name;
}

CValue MakeValue(const CXmlNode& node, bool isElement);

CValue MakeSequence(const std::vector<CXmlNode>& elements, std::string typeName)
{
    CValue sequence = CValue::Sequence(std::move(typeName));
    for (const CXmlNode& element : elements)
        sequence.GetElements().push_back(MakeValue(element, true));
    return sequence;
}

CValue MakeObject(const std::vector<CXmlNode>& elements, std::string typeName)
{
    CValue object = CValue::Object(std::move(typeName));
    for (const CXmlNode& element : elements)
        object.GetFields().push_back({element.GetName(), MakeValue(element, false)});
    return object;
}

// The name of an element of a sequence is its type, that of a field its key.
CValue MakeValue(const CXmlNode& node, bool isElement)
{
    const std::vector<CXmlNode> elements = GetElements(node);
    const bool isTyped = isElement && node.GetName() != SequenceElementName;
    if (elements.empty() && !isTyped)
        return std::string(TrimSpace(GetValueText(node))); // as CReaderXml takes a field
    std::string typeName = isTyped ? ToTypeName(node.GetName()) : std::string();
    return LooksLikeSequence(elements) ? MakeSequence(elements, std::move(typeName))
                                       : MakeObject(elements, std::move(typeName));
}

// The first element behind all declarations, and the declaration that is nearest to it. The empty node if there is
// none.
struct SRoot
{
    CXmlNode declaration;
    CXmlNode element;
};

SRoot FindRoot(const CXmlNode& top)
{
    if (!top.IsEmpty() && top.GetName() != nullptr && !top.IsDeclaration())
        return {{}, top};
    for (std::uint32_t index = 0; index < top.GetChildCount(); ++index)
    {
        const CXmlNode child = top.GetChild(index);
        if (!child.IsDeclaration())
            return {top, child};
        if (SRoot root = FindRoot(child); !root.element.IsEmpty())
            return root;
    }
    return {};
}

bool HasAttribute(const CXmlNode& node, const char* name)
{
    for (std::uint32_t index = 0; index < node.GetAttributeCount(); ++index)
        if (std::strcmp(node.GetAttribute(index).name, name) == 0)
            return true;
    return false;
}

// The library's writer tells it by the header.
bool IsSequence(const SRoot& root, const std::vector<CXmlNode>& elements)
{
    if (HasAttribute(root.element, "xmlns:xsi") && HasAttribute(root.element, "xmlns:xsd"))
        return !HasAttribute(root.declaration, "encoding");
    return LooksLikeSequence(elements);
}

} // namespace

CValue CValue::FromXml(const char* text)
{
    const auto raise = [](SDocumentFailure failure)
    { throw CDocumentException(__FILE__, __LINE__, "Vellum::CValue::FromXml", std::move(failure)); };
    SXmlParseOutcome parse{};
    const CXmlNode tree = ParseXmlText(text, &parse);
    if (parse.error != XmlOk)
    {
        const SXmlOutcome outcome = CReaderXml(text).Check();
        raise({outcome.reason, outcome.path, {}, outcome.line, outcome.column, outcome.offset});
    }
    const SRoot root = FindRoot(tree);
    if (root.element.IsEmpty())
        raise({"Expected an element, found none.", {}, {}, 1, 1, 0});
    const std::vector<CXmlNode> elements = ::Vellum::GetElements(root.element);
    std::string typeName = ToTypeName(root.element.GetName());
    return IsSequence(root, elements) ? MakeSequence(elements, std::move(typeName))
                                      : MakeObject(elements, std::move(typeName));
}

} // namespace Vellum
