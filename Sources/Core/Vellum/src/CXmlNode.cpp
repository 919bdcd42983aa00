#include "Vellum/src/CXmlNode.h"

#include <cstring>
#include <memory>
#include <utility>

namespace Vellum
{

CXmlNode CXmlNode::MakeDocument()
{
    auto memory = std::make_unique<CXmlMemory>();
    CXmlNode document(CXmlElement::MakeDocument(*memory));
    memory.release();
    return document;
}

CXmlNode::CXmlNode(CXmlElement element) noexcept : CXmlElement(element)
{
    if (IsEmpty())
        return;
    ++data->handleCount;
    ++memory->handleCount;
}

CXmlNode::CXmlNode(const CXmlNode& other) noexcept : CXmlNode(static_cast<const CXmlElement&>(other)) {}

CXmlNode::CXmlNode(CXmlNode&& other) noexcept : CXmlElement(std::exchange(static_cast<CXmlElement&>(other), {})) {}

CXmlNode& CXmlNode::operator=(const CXmlNode& other) noexcept { return *this = CXmlNode(other); }

CXmlNode& CXmlNode::operator=(CXmlNode&& other) noexcept
{
    CXmlNode taken(std::move(other)); // lets what this one had go, and survives that both are the same
    std::swap(static_cast<CXmlElement&>(*this), static_cast<CXmlElement&>(taken));
    return *this;
}

// Nothing is given back but the whole tree, with its last handle.
CXmlNode::~CXmlNode()
{
    if (IsEmpty())
        return;
    --data->handleCount;
    if (--memory->handleCount == 0)
        delete memory;
}

CXmlNode CXmlNode::AddChild(const char* name, bool isDeclaration)
{
    if (name == nullptr)
        return CXmlNode();
    const std::string_view text(name);
    const SXmlName* const shared = MakeXmlName(text, HashXmlName(text), text.size(), *memory);
    return shared == nullptr ? CXmlNode() : CXmlNode(CXmlElement::AddChild(*shared, isDeclaration));
}

} // namespace Vellum
