#pragma once

#include <cstdint>
#include <memory>
#include <utility>

namespace Vellum
{

// A zero-terminated text on the heap, on its way into a tree. Null if it couldn't be had.
using XmlText = std::unique_ptr<char[]>;

// One clear section: content that was taken from the document as it stands.
struct SXmlClear
{
    const char* value;   // owned by the node
    const char* openTag; // constants of the parser
    const char* closeTag;
};

struct SXmlAttribute
{
    const char* name;  // owned by the node
    const char* value; // owned by the node; null for an attribute without "="
};

// Which of the four arrays of a node an entry of its `order` speaks of.
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

// The record behind a CXmlNode. An array is null while its count is 0.
struct SXmlNodeData
{
    const char* name; // owned; as in the document. Null for the document node alone
    std::uint32_t childCount;
    std::uint32_t textCount;
    std::uint32_t clearCount;
    std::uint32_t attributeCount;
    bool isDeclaration;      // opened by "<?"
    SXmlNodeData* parent;    // not owned; null at the top, and once the parent has gone
    SXmlNodeData** children; // each entry holds one reference
    const char** texts;      // each owned
    SXmlClear* clears;
    SXmlAttribute* attributes;
    std::uint32_t* order;  // one entry for each of the other four arrays, as added: index * 4 + EXmlEntry
    SXmlIndexEntry* index; // one entry for each child; null until a lookup needs it
    std::uint32_t referenceCount;
};

// CXmlNode: a handle to one element of a parsed document, or the empty node, which has nothing. Copies share the
// element. A handle keeps its element and all below it, not what is above: the top of a tree can go while a part is
// still in use.
//
// Life     The parser fills a node, compacts it when its end tag has come, and from then on only reads it.
// Memory   An array grows to the next power of two. Dropping a tree takes no stack, however deep it is.
// Errors   std::bad_alloc when a record or an array can't be had. A text that couldn't be had arrives as null, and the
//          operation that gets it adds nothing.
// Threads  A tree and all its handles belong to one thread: reading counts references and makes indices.
class CXmlNode
{
public:
    CXmlNode() noexcept = default;
    CXmlNode(SXmlNodeData* parent, XmlText name, bool isDeclaration);
    CXmlNode(const CXmlNode& other) noexcept;
    CXmlNode(CXmlNode&& other) noexcept : data(std::exchange(other.data, nullptr)) {}
    CXmlNode& operator=(const CXmlNode& other) noexcept;
    CXmlNode& operator=(CXmlNode&& other) noexcept;
    ~CXmlNode();

    bool IsEmpty() const noexcept { return data == nullptr; }
    const char* GetName() const noexcept { return IsEmpty() ? nullptr : data->name; }
    std::uint32_t GetChildCount() const noexcept { return IsEmpty() ? 0 : data->childCount; }
    std::uint32_t GetTextCount() const noexcept { return IsEmpty() ? 0 : data->textCount; }
    std::uint32_t GetClearCount() const noexcept { return IsEmpty() ? 0 : data->clearCount; }

    // The empty node past the end.
    CXmlNode GetChild(std::uint32_t index) const noexcept;

    // The first child of that name, compared whole and without regard to case; the empty node if there is none.
    CXmlNode GetChild(const char* name) const;

    // Owned by the node; null, or three null pointers, past the end.
    const char* GetText(std::uint32_t index) const noexcept;
    SXmlClear GetClear(std::uint32_t index) const noexcept;

    // The record, for those who look at more than a reader needs.
    const SXmlNodeData* GetData() const noexcept { return data; }

    // Append. A null name, text or value of a clear section adds nothing; AddChild then returns the empty node. Nothing
    // may be added to a node that has been compacted.
    CXmlNode AddChild(XmlText name, bool isDeclaration);
    void AddAttribute(XmlText name, XmlText value);
    void AddText(XmlText text);
    void AddClear(XmlText value, const char* openTag, const char* closeTag);

    // Gives the arrays' spare room back.
    void Compact();

private:
    explicit CXmlNode(SXmlNodeData* shared) noexcept;

    SXmlNodeData* data = nullptr;
};

} // namespace Vellum
