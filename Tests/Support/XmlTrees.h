#pragma once

#include <string>

#include "Vellum/src/CXmlNode.h"

namespace Support
{

using Vellum::CXmlNode;

// One line for a tree: name(entries in their order), with @ for an attribute, ' ' around a text, { } around a clear
// section with its opening tag in front, ? in front of a declaration, * for the node around several top-level elements.
inline std::string Dump(const CXmlNode& node)
{
    if (node.IsEmpty())
        return "-";
    std::string dump = node.IsDeclaration() ? "?" : "";
    dump += node.GetName() == nullptr ? "*" : node.GetName();
    for (std::uint32_t place = 0; place < node.GetEntryCount(); ++place)
    {
        const auto [kind, index] = node.GetEntry(place);
        dump += place == 0 ? "(" : " ";
        if (kind == Vellum::XmlChildEntry)
            dump += Dump(node.GetChild(index));
        else if (kind == Vellum::XmlTextEntry)
            dump += "'" + std::string(node.GetText(index)) + "'";
        else if (kind == Vellum::XmlClearEntry)
            dump += node.GetClear(index).openTag + ("{" + std::string(node.GetClear(index).value)) + "}";
        else
            dump +=
                "@" + std::string(node.GetAttribute(index).name) +
                (node.GetAttribute(index).value == nullptr ? "" : "=" + std::string(node.GetAttribute(index).value));
    }
    if (!node.GetChild(node.GetChildCount()).IsEmpty() || node.GetText(node.GetTextCount()) != nullptr ||
        node.GetAttribute(node.GetAttributeCount()).name != nullptr ||
        node.GetClear(node.GetClearCount()).value != nullptr)
        dump += " and more than there is";
    return dump + (node.GetEntryCount() == 0 ? "()" : ")");
}

} // namespace Support
