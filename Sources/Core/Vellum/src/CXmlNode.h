#pragma once

#include <cstdint>

#include "Vellum/src/CXmlElement.h"

namespace Vellum
{

// CXmlNode: a handle to one element of a parsed document, or the empty node, which has nothing. Copies share the
// element. A handle keeps its element and all below it, not what is above: the top of a tree can go while a part is
// still in use. What can be read is told by CXmlElement, which is what those pass on who know that a handle lives.
//
// Memory   is that of the tree, which the last handle to any of its nodes gives back as a whole.
// Errors   std::bad_alloc when a record or an array can't be had. A text that couldn't be had arrives as null, and the
//          operation that gets it adds nothing.
// Threads  A tree and all its handles belong to one thread: reading counts handles and makes indices.
class CXmlNode : public CXmlElement
{
public:
    // The top of a new tree: a node without a name.
    static CXmlNode MakeDocument();

    CXmlNode() noexcept = default;
    explicit CXmlNode(CXmlElement element) noexcept;
    CXmlNode(const CXmlNode& other) noexcept;
    CXmlNode(CXmlNode&& other) noexcept;
    CXmlNode& operator=(const CXmlNode& other) noexcept;
    CXmlNode& operator=(CXmlNode&& other) noexcept;
    ~CXmlNode();

    // As with CXmlElement, with a handle to what is found.
    CXmlNode GetChild(std::uint32_t index) const noexcept { return CXmlNode(CXmlElement::GetChild(index)); }
    CXmlNode GetChild(const char* name) const { return CXmlNode(CXmlElement::GetChild(name)); }

    // Like CXmlElement's, for a name in the tree's memory that no other element has. A null name adds nothing and gives
    // the empty node.
    CXmlNode AddChild(const char* name, bool isDeclaration);
};

} // namespace Vellum
