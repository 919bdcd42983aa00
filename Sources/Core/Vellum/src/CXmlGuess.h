#pragma once

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

// CXmlGuess: adds the children of an element, and knows what comes next. Records of one kind have the same children in
// the same order, and the elements of a sequence have one name. So the next child may have the name of the child that
// follows in an element like this one, the model, or of its sibling in front: a comparison tells, and the name needn't
// be looked for any more. A guess that fails costs no more than that.
//
// Model    An element of the same name that came before: for a child, the one that the parent's model has in its place,
//          or else the sibling in front, or else the parent.
class CXmlGuess
{
public:
    CXmlGuess(CXmlElement parent, CXmlElement model) : parent(parent), expected(model.GetFirstChild()) {}

    // The name for which there is a start tag without attributes at this place. Null if that couldn't be guessed.
    const SXmlName* FindStartTag(const char* at, const char* end) const
    {
        if (!expected.IsEmpty() && IsTagOf(*expected.GetSharedName(), 1, at, end))
            return expected.GetSharedName();
        const CXmlElement last = parent.GetLastChild();
        return !last.IsEmpty() && IsTagOf(*last.GetSharedName(), 1, at, end) ? last.GetSharedName() : nullptr;
    }

    // Appends a child, and returns it with its model, which may be empty.
    std::pair<CXmlElement, CXmlElement> AddChild(const SXmlName& name, bool isDeclaration)
    {
        const CXmlElement model = takeModel(name);
        const std::uint64_t bit = std::uint64_t{1} << (name.hash % 64);
        const bool mayRepeat = (names & bit) != 0;
        names |= bit;
        return {parent.AddChild(name, isDeclaration, mayRepeat), model};
    }

private:
    static constexpr unsigned MaxLeftOut = 4; // children of the model that this element doesn't have

    CXmlElement takeModel(const SXmlName& name)
    {
        CXmlElement like = expected;
        for (unsigned i = 0; i < MaxLeftOut && !like.IsEmpty(); ++i, like = like.GetNext())
            if (like.GetSharedName() == &name)
            {
                expected = like.GetNext();
                return like;
            }
        for (const CXmlElement known : {parent.GetLastChild(), parent})
            if (known.GetSharedName() == &name)
                return known;
        return CXmlElement();
    }

    CXmlElement parent;
    CXmlElement expected;    // child of the model; empty if there is none
    std::uint64_t names = 0; // hashes of the names so far, modulo 64
};

} // namespace Vellum
