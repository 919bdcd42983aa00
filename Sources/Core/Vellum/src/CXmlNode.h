#pragma once

#include <cstdint>
#include <utility>

#include "Vellum/src/CXmlMemory.h"

namespace Vellum
{

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

// One child in the index of names, which is sorted by hash, name and position: the first entry of a name is its first
// child, and no choice of names makes a lookup slow.
struct SXmlIndexEntry
{
    std::uint32_t hash;  // of the folded name
    std::uint32_t child; // index in `children`
};

struct SXmlNodeData;

// What few nodes have.
struct SXmlNodeExtras
{
    SXmlClear* clears;
    SXmlAttribute* attributes;
    SXmlIndexEntry* index; // one entry for each child; null until a lookup needs it
    std::uint32_t clearCount;
    std::uint32_t attributeCount;
};

// The record behind a CXmlNode. An array is null while its count is 0. All of it lies in the memory of the tree.
struct SXmlNodeData
{
    const char* name;        // as in the document; null for the document node alone
    SXmlNodeData* parent;    // not owned; null at the top, and once the parent has gone
    CXmlMemory* memory;      // of the tree
    SXmlNodeData** children; // each entry holds one reference
    const char** texts;
    std::uint32_t* order;   // index * 4 + EXmlEntry for each entry of the four arrays, as added; null while all of
                            // them are in one array
    SXmlNodeExtras* extras; // null if there are none
    std::uint32_t childCount;
    std::uint32_t textCount;
    std::uint32_t referenceCount; // handles, and the parent
    bool isDeclaration;           // opened by "<?"
};

// CXmlNode: a handle to one element of a parsed document, or the empty node, which has nothing. Copies share the
// element. A handle keeps its element and all below it, not what is above: the top of a tree can go while a part is
// still in use.
//
// Life     The parser fills a node until its end tag has come, and from then on it is only read.
// Memory   is that of the tree, which the last handle to any of its nodes gives back as a whole. An array grows to the
//          next power of two, and what it has outgrown serves other arrays.
// Errors   std::bad_alloc when a record or an array can't be had. A text that couldn't be had arrives as null, and the
//          operation that gets it adds nothing.
// Threads  A tree and all its handles belong to one thread: reading counts references and makes indices.
class CXmlNode
{
public:
    // The top of a new tree: a node without a name.
    static CXmlNode MakeDocument();

    CXmlNode() noexcept = default;
    CXmlNode(const CXmlNode& other) noexcept;
    CXmlNode(CXmlNode&& other) noexcept : data(std::exchange(other.data, nullptr)) {}
    CXmlNode& operator=(const CXmlNode& other) noexcept;
    CXmlNode& operator=(CXmlNode&& other) noexcept;
    ~CXmlNode();

    bool IsEmpty() const noexcept { return data == nullptr; }
    const char* GetName() const noexcept { return IsEmpty() ? nullptr : data->name; }
    bool IsDeclaration() const noexcept { return !IsEmpty() && data->isDeclaration; }
    bool HasParent() const noexcept { return !IsEmpty() && data->parent != nullptr; }

    std::uint32_t GetChildCount() const noexcept { return IsEmpty() ? 0 : data->childCount; }
    std::uint32_t GetTextCount() const noexcept { return IsEmpty() ? 0 : data->textCount; }
    std::uint32_t GetClearCount() const noexcept { return hasExtras() ? data->extras->clearCount : 0; }
    std::uint32_t GetAttributeCount() const noexcept { return hasExtras() ? data->extras->attributeCount : 0; }

    // The empty node past the end.
    CXmlNode GetChild(std::uint32_t index) const noexcept;

    // The first child of that name, compared whole and without regard to case; the empty node if there is none.
    CXmlNode GetChild(const char* name) const;

    // Owned by the tree; null, or null pointers, past the end.
    const char* GetText(std::uint32_t index) const noexcept;
    SXmlClear GetClear(std::uint32_t index) const noexcept;
    SXmlAttribute GetAttribute(std::uint32_t index) const noexcept;

    // Of all entries of the four kinds together, in the order of the document: which kind the one at `place` has, and
    // which of its kind it is.
    std::uint32_t GetEntryCount() const noexcept;
    std::pair<EXmlEntry, std::uint32_t> GetEntry(std::uint32_t place) const noexcept;

    // Where names, texts and values that are added have to lie.
    CXmlMemory& GetMemory() const noexcept { return *data->memory; }

    // Append. A null name, text or value of a clear section adds nothing; AddChild then returns the empty node.
    CXmlNode AddChild(const char* name, bool isDeclaration);
    void AddAttribute(const char* name, const char* value);
    void AddText(const char* text);
    void AddClear(const char* value, const char* openTag, const char* closeTag);

private:
    explicit CXmlNode(SXmlNodeData* shared) noexcept;
    bool hasExtras() const noexcept { return !IsEmpty() && data->extras != nullptr; }

    SXmlNodeData* data = nullptr;
};

} // namespace Vellum
