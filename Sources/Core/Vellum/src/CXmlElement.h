#pragma once

#include <cstdint>
#include <string_view>
#include <type_traits>
#include <utility>

#include "Vellum/src/CXmlMemory.h"
#include "Vellum/src/SXmlName.h"

namespace Vellum
{

class CXmlNameIndex;

// A piece of text that is zero-terminated. The length ends at the first NUL.
struct SXmlText
{
    const char* text;
    std::uint32_t length;
};

// One clear section: content that was taken from the document as it stands.
struct SXmlClear
{
    const char* value;
    const char* openTag; // constants of the parser
    const char* closeTag;
};

struct SXmlAttribute
{
    const char* name;
    const char* value; // null for an attribute without "="
};

enum EXmlEntry : std::uint32_t
{
    XmlChildEntry,
    XmlAttributeEntry,
    XmlTextEntry,
    XmlClearEntry
};

struct SXmlNodeData;

// The child elements of a node, a ring that begins behind its last one.
struct SXmlChildren
{
    SXmlNodeData* last;
    std::uint32_t count;
};

// The content of a node that has more than one text or than child elements. An array is null while its count is 0.
struct SXmlMixedContent
{
    SXmlChildren children;
    std::uint32_t textCount;
    std::uint32_t clearCount;
    std::uint32_t attributeCount;
    std::uint32_t runCount;
    SXmlText* texts;
    SXmlClear* clears;
    SXmlAttribute* attributes;
    std::uint32_t* runs;        // the order of the entries: of each run of one kind its length * 4 + EXmlEntry
    SXmlNodeData** places;      // the children by their index; null until that is needed
    const CXmlNameIndex* names; // ... by their name
};

enum class EXmlContent : std::uint32_t
{
    None,
    Text,     // one alone
    Children, // and nothing else
    Mixed
};

// The record behind an element. All of it lies in the memory of the tree.
struct SXmlNodeData
{
    const SXmlName* name; // null for the document node alone
    SXmlNodeData* parent; // null at the top
    SXmlNodeData* next;   // the child behind it in its parent; behind the last one comes the first
    union
    {
        const char* text;        // of EXmlContent::Text, as is `count`, its length
        SXmlNodeData* lastChild; // of EXmlContent::Children, as is their `count`
        SXmlMixedContent* mixed; // of EXmlContent::Mixed
    };
    std::uint32_t count;
    std::uint32_t handleCount : 27;
    std::uint32_t isDeclaration : 1; // opened by "<?"
    std::uint32_t mayRepeat : 1;     // a child in front of it in its parent may have the same name
    std::uint32_t content : 2;       // EXmlContent
};

// CXmlElement: one element of a tree, or the empty one, which has nothing. It is as good as a pointer: the tree is kept
// by a CXmlNode, and this one must not outlive it.
//
// Life     The parser fills an element until its end tag has come, and from then on it is only read.
// Memory   is that of the tree. A child is one record in a ring. One text, or children alone, need nothing but the
//          record; all else has arrays, which grow to the next power of two, and what they have outgrown serves other
//          arrays. What makes many children quick to find, by index or by name, is made when it is first needed.
// Errors   std::bad_alloc when a record or an array can't be had.
// Threads  A tree belongs to one thread: reading makes indices.
class CXmlElement
{
public:
    CXmlElement() noexcept = default;
    CXmlElement(SXmlNodeData* node, CXmlMemory* tree) noexcept : data(node), memory(tree) {}

    // The top of a new tree in that memory: an element without a name.
    static CXmlElement MakeDocument(CXmlMemory& memory);

    bool IsEmpty() const noexcept { return data == nullptr; }
    bool IsDeclaration() const noexcept { return !IsEmpty() && data->isDeclaration; }

    // Whether there is a parent that a handle still keeps.
    bool HasParent() const noexcept;

    // Null for the empty element and the document.
    const char* GetName() const noexcept { return GetSharedName() == nullptr ? nullptr : data->name->text; }
    const SXmlName* GetSharedName() const noexcept { return IsEmpty() ? nullptr : data->name; }

    std::uint32_t GetChildCount() const noexcept { return getChildren().count; }
    std::uint32_t GetTextCount() const noexcept
    {
        return hasContent(EXmlContent::Text) ? 1 : isMixed() ? data->mixed->textCount : 0;
    }
    std::uint32_t GetClearCount() const noexcept { return isMixed() ? data->mixed->clearCount : 0; }
    std::uint32_t GetAttributeCount() const noexcept { return isMixed() ? data->mixed->attributeCount : 0; }

    // The empty element past the end, and where there are none.
    CXmlElement GetChild(std::uint32_t index) const noexcept;
    CXmlElement GetFirstChild() const noexcept;
    CXmlElement GetLastChild() const noexcept { return {getChildren().last, memory}; }

    // Of an element that is a child: the one behind it, the first one behind the last.
    CXmlElement GetNext() const noexcept { return {data->next, memory}; }

    // The first child of that name, compared whole and without regard to case; the empty element if there is none.
    CXmlElement GetChild(const char* name) const;

    // The same, of which a client that asks for one child after the other finds most with one comparison. `last` is the
    // child that was found last, or the empty element.
    CXmlElement GetChild(const char* name, CXmlElement& last) const;

    // Owned by the tree; null, or null pointers, past the end.
    const char* GetText(std::uint32_t index) const noexcept { return getText(index).text; }
    SXmlClear GetClear(std::uint32_t index) const noexcept;
    SXmlAttribute GetAttribute(std::uint32_t index) const noexcept;

    // The first text, or the empty text; zero-terminated.
    std::string_view GetFirstText() const noexcept;

    // Of all entries of the four kinds together, in the order of the document: which kind the one at `place` has, and
    // which of its kind it is.
    std::uint32_t GetEntryCount() const noexcept;
    std::pair<EXmlEntry, std::uint32_t> GetEntry(std::uint32_t place) const noexcept;

    // Where names, texts and values that are added have to lie.
    CXmlMemory& GetMemory() const noexcept { return *memory; }

    // Append. A null name, text or value of a clear section adds nothing. A child may have the name of one in front of
    // it, unless its maker knows better.
    CXmlElement AddChild(const SXmlName& name, bool isDeclaration, bool mayRepeat = true) const;
    void AddAttribute(const char* name, const char* value) const;
    void AddText(SXmlText text) const;
    void AddText(const char* text) const;
    void AddClear(const char* value, const char* openTag, const char* closeTag) const;

protected:
    SXmlNodeData* data = nullptr;
    CXmlMemory* memory = nullptr;

private:
    bool hasContent(EXmlContent content) const noexcept
    {
        return !IsEmpty() && data->content == static_cast<std::uint32_t>(content);
    }
    bool isMixed() const noexcept { return hasContent(EXmlContent::Mixed); }
    SXmlChildren getChildren() const noexcept;
    SXmlText getText(std::uint32_t index) const noexcept;
    SXmlMixedContent& getMixed() const;
    SXmlNodeData* const* getPlaces() const noexcept;

    void addOtherChild(SXmlNodeData* child) const;
    void addOtherText(SXmlText text) const;
    template <class Entry>
    void addEntry(EXmlEntry kind, Entry* SXmlMixedContent::*array, std::uint32_t SXmlMixedContent::*count,
                  std::type_identity_t<Entry> entry) const;
};

inline SXmlChildren CXmlElement::getChildren() const noexcept
{
    if (hasContent(EXmlContent::Children))
        return {data->lastChild, data->count};
    return isMixed() ? data->mixed->children : SXmlChildren{};
}

inline CXmlElement CXmlElement::GetFirstChild() const noexcept
{
    const SXmlNodeData* const last = getChildren().last;
    return {last == nullptr ? nullptr : last->next, memory};
}

inline std::string_view CXmlElement::GetFirstText() const noexcept
{
    if (hasContent(EXmlContent::Text))
        return {data->text, data->count};
    return GetTextCount() == 0 ? std::string_view("")
                               : std::string_view(data->mixed->texts->text, data->mixed->texts->length);
}

inline CXmlElement CXmlElement::AddChild(const SXmlName& name, bool isDeclaration, bool mayRepeat) const
{
    SXmlNodeData* const child = new (memory->Allocate<SXmlNodeData>())
        SXmlNodeData{&name, data, nullptr, {nullptr}, 0, 0, isDeclaration, mayRepeat, 0};
    if (hasContent(EXmlContent::Children))
    {
        child->next = data->lastChild->next;
        data->lastChild->next = child;
        data->lastChild = child;
        ++data->count;
    }
    else
        addOtherChild(child);
    return {child, memory};
}

inline void CXmlElement::AddText(SXmlText text) const
{
    if (text.text == nullptr || !hasContent(EXmlContent::None))
        return addOtherText(text);
    data->content = static_cast<std::uint32_t>(EXmlContent::Text);
    data->text = text.text;
    data->count = text.length;
}

} // namespace Vellum
