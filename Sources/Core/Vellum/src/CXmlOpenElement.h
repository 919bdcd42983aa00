#pragma once

#include <cstddef>
#include <cstdint>

#include "Vellum/src/CXmlElement.h"
#include "Vellum/src/XmlScan.h"

namespace Vellum
{

// Whether there is "<name>", or for an `open` of 2 bytes "</name>", and nothing else can be meant.
inline bool IsTagOf(const SXmlName& name, std::ptrdiff_t open, const char* at, const char* end)
{
    return name.isPlain && end - at > open && XmlScan::StartsWith(at + open, end, name.text, name.length) &&
           at[open + static_cast<std::ptrdiff_t>(name.length)] == '>';
}

// CXmlOpenElement: an element whose end tag hasn't come yet. It guesses which child comes next: records of one kind
// have the same children in the same order, and the elements of a sequence have one name. So a child may have the name
// of the one that has its place in an element like this, the model, or of its sibling in front. A comparison tells, and
// then the name needn't be looked for. A guess that fails costs no more than that.
//
// Model    An element of the same name that came before: for a child, the one that its parent's model has in its place,
//          or else the sibling in front, or else the parent. It may be open still.
class CXmlOpenElement
{
public:
    CXmlOpenElement(CXmlElement opened, CXmlElement model) : element(opened), expected(model.GetFirstChild()) {}

    CXmlElement GetElement() const { return element; }

    // The name for which there is a start tag without attributes at this place. Null if that couldn't be guessed.
    const SXmlName* GuessStartTag(const char* at, const char* end) const
    {
        if (!expected.IsEmpty() && IsTagOf(*expected.GetSharedName(), 1, at, end))
            return expected.GetSharedName();
        const CXmlElement last = element.GetLastChild();
        return !last.IsEmpty() && IsTagOf(*last.GetSharedName(), 1, at, end) ? last.GetSharedName() : nullptr;
    }

    // A child with a model, which may be the empty element.
    struct SChild
    {
        CXmlElement child;
        CXmlElement model;
    };

    SChild AddChild(const SXmlName& name, bool isDeclaration)
    {
        const CXmlElement model = takeModel(name);
        const std::uint64_t bit = std::uint64_t{1} << (name.hash % 64);
        const bool mayRepeat = (names & bit) != 0;
        names |= bit;
        return {element.AddChild(name, isDeclaration, mayRepeat), model};
    }

private:
    static constexpr unsigned MaxLeftOut = 3; // children of the model that this element doesn't have

    CXmlElement takeModel(const SXmlName& name)
    {
        CXmlElement like = expected;
        for (unsigned i = 0; i <= MaxLeftOut && !like.IsEmpty(); ++i, like = like.GetNext())
            if (like.GetSharedName() == &name)
            {
                expected = like.GetNext();
                return like;
            }
        for (const CXmlElement known : {element.GetLastChild(), element})
            if (known.GetSharedName() == &name)
                return known;
        return {};
    }

    CXmlElement element;
    CXmlElement expected;    // child of the model; the empty element without one
    std::uint64_t names = 0; // which hashes the children's names have, modulo 64
};

} // namespace Vellum
