#include "Vellum/src/CXmlElement.h"

#include <array>
#include <cstring>
#include <new>
#include <type_traits>

#include "Vellum/src/CXmlNameIndex.h"

namespace Vellum
{
namespace
{

// Up to this many children are walked along: that is faster than making an index.
constexpr std::uint32_t MaxUnindexed = 16;

constexpr bool IsPowerOfTwo(std::uint32_t count) { return (count & (count - 1)) == 0; }

// Room for `count` entries and one more. Without that room the array is full: empty, or of a power of two.
template <class Entry>
void MakeRoom(CXmlMemory& memory, Entry*& array, std::uint32_t count)
{
    if (!IsPowerOfTwo(count))
        return;
    Entry* const larger = memory.AllocateArray<Entry>(count == 0 ? 1 : std::size_t{count} * 2);
    if (count != 0)
    {
        std::memcpy(larger, array, count * sizeof(Entry));
        memory.Recycle(array, count);
    }
    array = larger;
}

// Notes that so many entries of a kind come next in the order. If it raises, the order is as it was.
void AddToOrder(CXmlMemory& memory, SXmlMixedContent& content, EXmlEntry kind, std::uint32_t count)
{
    if (content.runCount == 0 || content.runs[content.runCount - 1] % 4 != kind)
    {
        MakeRoom(memory, content.runs, content.runCount);
        content.runs[content.runCount++] = kind;
    }
    content.runs[content.runCount - 1] += count * 4;
}

// Names are short, and mostly equal where they are compared.
bool IsEqual(const char* left, const char* right)
{
    for (; *left == *right; ++left, ++right)
        if (*left == 0)
            return true;
    return false;
}

SXmlNodeData* FindOneByOne(const SXmlChildren& children, std::string_view name)
{
    const std::uint32_t hash = HashXmlName(name);
    SXmlNodeData* child = children.last;
    for (std::uint32_t i = 0; i < children.count; ++i)
    {
        child = child->next;
        if (child->name->hash == hash && HasName(*child->name, name))
            return child;
    }
    return nullptr;
}

SXmlNodeData** MakePlaces(const SXmlChildren& children, CXmlMemory& memory)
{
    SXmlNodeData** const places = memory.AllocateArray<SXmlNodeData*>(children.count);
    SXmlNodeData* child = children.last;
    for (std::uint32_t i = 0; i < children.count; ++i)
        places[i] = child = child->next;
    return places;
}

} // namespace

CXmlElement CXmlElement::MakeDocument(CXmlMemory& memory)
{
    return {new (memory.Allocate<SXmlNodeData>()) SXmlNodeData{}, &memory};
}

// Nothing leads from a node to its parent but this, so a parent has gone when neither it nor anything above it has a
// handle.
bool CXmlElement::HasParent() const noexcept
{
    if (IsEmpty())
        return false;
    const SXmlNodeData* above = data->parent;
    while (above != nullptr && above->handleCount == 0)
        above = above->parent;
    return above != nullptr;
}

SXmlText CXmlElement::getText(std::uint32_t index) const noexcept
{
    if (index >= GetTextCount())
        return {};
    return isMixed() ? data->mixed->texts[index] : SXmlText{data->text, data->count};
}

SXmlClear CXmlElement::GetClear(std::uint32_t index) const noexcept
{
    return index < GetClearCount() ? data->mixed->clears[index] : SXmlClear{};
}

SXmlAttribute CXmlElement::GetAttribute(std::uint32_t index) const noexcept
{
    return index < GetAttributeCount() ? data->mixed->attributes[index] : SXmlAttribute{};
}

// Null if memory is short.
SXmlNodeData* const* CXmlElement::getPlaces() const noexcept
try
{
    SXmlMixedContent& content = getMixed();
    if (content.places == nullptr)
        content.places = MakePlaces(content.children, *memory);
    return content.places;
}
catch (const std::bad_alloc&)
{
    return nullptr;
}

CXmlElement CXmlElement::GetChild(std::uint32_t index) const noexcept
{
    const SXmlChildren children = getChildren();
    if (index >= children.count)
        return {};
    if (children.count > MaxUnindexed)
        if (SXmlNodeData* const* const places = getPlaces())
            return {places[index], memory};
    SXmlNodeData* child = children.last->next;
    while (index-- != 0)
        child = child->next;
    return {child, memory};
}

CXmlElement CXmlElement::GetChild(const char* name) const
{
    const SXmlChildren children = getChildren();
    if (children.count <= MaxUnindexed)
        return {FindOneByOne(children, name), memory};
    SXmlMixedContent& content = getMixed();
    if (content.names == nullptr)
        content.names = CXmlNameIndex::Make(children, *memory);
    return {content.names->Find(name), memory};
}

CXmlElement CXmlElement::GetChild(const char* name, CXmlElement& last) const
{
    const CXmlElement next = last.IsEmpty() ? GetFirstChild() : last.GetNext();
    if (!next.IsEmpty() && !next.data->mayRepeat && IsEqual(next.data->name->text, name))
        return last = next;
    const CXmlElement found = GetChild(name);
    if (!found.IsEmpty())
        last = found;
    return found;
}

std::uint32_t CXmlElement::GetEntryCount() const noexcept
{
    return GetChildCount() + GetAttributeCount() + GetTextCount() + GetClearCount();
}

std::pair<EXmlEntry, std::uint32_t> CXmlElement::GetEntry(std::uint32_t place) const noexcept
{
    if (!isMixed())
        return {hasContent(EXmlContent::Text) ? XmlTextEntry : XmlChildEntry, place};
    std::array<std::uint32_t, 4> before{}; // entries of each kind in the runs in front
    for (const std::uint32_t* run = data->mixed->runs;; ++run)
    {
        const std::uint32_t length = *run / 4;
        if (place < length)
            return {static_cast<EXmlEntry>(*run % 4), before[*run % 4] + place};
        before[*run % 4] += length;
        place -= length;
    }
}

// The mixed content of the node, into which what it has is moved.
SXmlMixedContent& CXmlElement::getMixed() const
{
    if (isMixed())
        return *data->mixed;
    auto* const mixed = new (memory->Allocate<SXmlMixedContent>()) SXmlMixedContent{};
    if (hasContent(EXmlContent::Text))
    {
        MakeRoom(*memory, mixed->texts, 0);
        mixed->texts[mixed->textCount++] = {data->text, data->count};
        AddToOrder(*memory, *mixed, XmlTextEntry, 1);
    }
    else if (hasContent(EXmlContent::Children))
    {
        mixed->children = {data->lastChild, data->count};
        AddToOrder(*memory, *mixed, XmlChildEntry, data->count);
    }
    data->content = static_cast<std::uint32_t>(EXmlContent::Mixed);
    data->mixed = mixed;
    return *mixed;
}

// The first child, or one that stands among other content.
void CXmlElement::addOtherChild(SXmlNodeData* child) const
{
    if (hasContent(EXmlContent::None))
    {
        data->content = static_cast<std::uint32_t>(EXmlContent::Children);
        data->lastChild = child->next = child;
        data->count = 1;
        return;
    }
    SXmlMixedContent& mixed = getMixed();
    AddToOrder(*memory, mixed, XmlChildEntry, 1);
    SXmlNodeData*& last = mixed.children.last;
    child->next = last == nullptr ? child : std::exchange(last->next, child);
    last = child;
    ++mixed.children.count;
    mixed.places = nullptr;
    mixed.names = nullptr;
}

// All room is made before the entry counts.
template <class Entry>
void CXmlElement::addEntry(EXmlEntry kind, Entry* SXmlMixedContent::*array, std::uint32_t SXmlMixedContent::*count,
                           std::type_identity_t<Entry> entry) const
{
    SXmlMixedContent& mixed = getMixed();
    MakeRoom(*memory, mixed.*array, mixed.*count);
    AddToOrder(*memory, mixed, kind, 1);
    (mixed.*array)[(mixed.*count)++] = entry;
}

void CXmlElement::AddAttribute(const char* name, const char* value) const
{
    if (name != nullptr)
        addEntry(XmlAttributeEntry, &SXmlMixedContent::attributes, &SXmlMixedContent::attributeCount, {name, value});
}

void CXmlElement::addOtherText(SXmlText text) const
{
    if (text.text != nullptr)
        addEntry(XmlTextEntry, &SXmlMixedContent::texts, &SXmlMixedContent::textCount, text);
}

void CXmlElement::AddText(const char* text) const
{
    AddText({text, text == nullptr ? 0 : static_cast<std::uint32_t>(std::strlen(text))});
}

void CXmlElement::AddClear(const char* value, const char* openTag, const char* closeTag) const
{
    if (value != nullptr)
        addEntry(XmlClearEntry, &SXmlMixedContent::clears, &SXmlMixedContent::clearCount, {value, openTag, closeTag});
}

} // namespace Vellum
