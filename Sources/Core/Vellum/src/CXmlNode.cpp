#include "Vellum/src/CXmlNode.h"

#include <algorithm>
#include <bit>

#include "Platform/TextCompare.h"

namespace Vellum
{
namespace
{

// Up to this many children are searched one by one: that is faster than making an index.
constexpr std::uint32_t MaxUnindexed = 16;

// Room that an array of `count` entries has before it is compacted; the next entry needs a larger one if it is full.
constexpr bool IsFull(std::uint32_t count) { return count == 0 || std::has_single_bit(count); }

template <class Entry>
void Resize(Entry*& array, std::uint32_t count, std::uint32_t capacity)
{
    Entry* const resized = new Entry[capacity];
    std::copy_n(array, count, resized);
    delete[] array;
    array = resized;
}

template <class Entry>
void MakeRoom(Entry*& array, std::uint32_t count)
{
    if (IsFull(count))
        Resize(array, count, count == 0 ? 1 : count * 2);
}

template <class Entry>
void TrimRoom(Entry*& array, std::uint32_t count)
{
    if (!IsFull(count))
        Resize(array, count, count);
}

std::uint32_t CountEntries(const SXmlNodeData& data)
{
    return data.childCount + data.textCount + data.clearCount + data.attributeCount;
}

// All room is made before anything changes.
template <class Entry>
void AddEntry(SXmlNodeData& data, Entry*& array, std::uint32_t& count, EXmlEntry type, Entry entry)
{
    const std::uint32_t total = CountEntries(data);
    MakeRoom(array, count);
    MakeRoom(data.order, total);
    array[count] = entry;
    data.order[total] = count * 4 + type;
    ++count;
}

void FreeRecord(SXmlNodeData* data) noexcept
{
    delete[] data->children;
    for (std::uint32_t i = 0; i < data->textCount; ++i)
        delete[] data->texts[i];
    delete[] data->texts;
    for (std::uint32_t i = 0; i < data->clearCount; ++i)
        delete[] data->clears[i].value;
    delete[] data->clears;
    for (std::uint32_t i = 0; i < data->attributeCount; ++i)
    {
        delete[] data->attributes[i].name;
        delete[] data->attributes[i].value;
    }
    delete[] data->attributes;
    delete[] data->order;
    delete[] data->index;
    delete[] data->name;
    delete data;
}

// Takes one reference away. The last one of a node that has a parent is the parent's own, so a node can only go when
// its parent goes or has gone. Records that wait to be freed are chained by `parent`, which they no longer need.
void Release(SXmlNodeData* data) noexcept
{
    if (data == nullptr || --data->referenceCount != 0)
        return;
    SXmlNodeData* waiting = data;
    waiting->parent = nullptr;
    while (waiting != nullptr)
    {
        SXmlNodeData* const freed = waiting;
        waiting = freed->parent;
        for (std::uint32_t i = 0; i < freed->childCount; ++i)
        {
            SXmlNodeData* const child = freed->children[i];
            child->parent = nullptr;
            if (--child->referenceCount == 0)
                child->parent = std::exchange(waiting, child);
        }
        FreeRecord(freed);
    }
}

// FNV-1a over the folded name.
std::uint32_t HashName(const char* name) noexcept
{
    std::uint32_t hash = 2166136261u;
    for (; *name != 0; ++name)
        hash = (hash ^ static_cast<unsigned char>(FoldCase(*name))) * 16777619u;
    return hash;
}

void MakeIndex(SXmlNodeData& data)
{
    auto index = std::make_unique<SXmlIndexEntry[]>(data.childCount);
    for (std::uint32_t i = 0; i < data.childCount; ++i)
        index[i] = {HashName(data.children[i]->name), i};
    std::sort(index.get(), index.get() + data.childCount,
              [&](const SXmlIndexEntry& left, const SXmlIndexEntry& right)
              {
                  if (left.hash != right.hash)
                      return left.hash < right.hash;
                  const int order =
                      CompareWithoutCase(data.children[left.child]->name, data.children[right.child]->name);
                  return order != 0 ? order < 0 : left.child < right.child;
              });
    data.index = index.release();
}

SXmlNodeData* FindIndexed(const SXmlNodeData& data, const char* name)
{
    const std::uint32_t hash = HashName(name);
    const SXmlIndexEntry* const begin = data.index;
    const SXmlIndexEntry* const end = begin + data.childCount;
    const auto isBefore = [&](const SXmlIndexEntry& entry)
    { return entry.hash != hash ? entry.hash < hash : CompareWithoutCase(data.children[entry.child]->name, name) < 0; };
    const SXmlIndexEntry* const found = std::partition_point(begin, end, isBefore);
    if (found == end || found->hash != hash || CompareWithoutCase(data.children[found->child]->name, name) != 0)
        return nullptr;
    return data.children[found->child];
}

SXmlNodeData* FindOneByOne(const SXmlNodeData& data, const char* name)
{
    for (std::uint32_t i = 0; i < data.childCount; ++i)
        if (CompareWithoutCase(data.children[i]->name, name) == 0)
            return data.children[i];
    return nullptr;
}

} // namespace

CXmlNode::CXmlNode(SXmlNodeData* parent, XmlText name, bool isDeclaration) : data(new SXmlNodeData{})
{
    data->name = name.release();
    data->isDeclaration = isDeclaration;
    data->parent = parent;
    data->referenceCount = 1;
}

CXmlNode::CXmlNode(SXmlNodeData* shared) noexcept : data(shared)
{
    if (data != nullptr)
        ++data->referenceCount;
}

CXmlNode::CXmlNode(const CXmlNode& other) noexcept : CXmlNode(other.data) {}

CXmlNode& CXmlNode::operator=(const CXmlNode& other) noexcept { return *this = CXmlNode(other); }

CXmlNode& CXmlNode::operator=(CXmlNode&& other) noexcept
{
    if (this != &other)
        Release(std::exchange(data, std::exchange(other.data, nullptr)));
    return *this;
}

CXmlNode::~CXmlNode() { Release(data); }

CXmlNode CXmlNode::GetChild(std::uint32_t index) const noexcept
{
    return CXmlNode(index < GetChildCount() ? data->children[index] : nullptr);
}

CXmlNode CXmlNode::GetChild(const char* name) const
{
    if (GetChildCount() <= MaxUnindexed)
        return CXmlNode(IsEmpty() ? nullptr : FindOneByOne(*data, name));
    if (data->index == nullptr)
        MakeIndex(*data);
    return CXmlNode(FindIndexed(*data, name));
}

const char* CXmlNode::GetText(std::uint32_t index) const noexcept
{
    return index < GetTextCount() ? data->texts[index] : nullptr;
}

SXmlClear CXmlNode::GetClear(std::uint32_t index) const noexcept
{
    return index < GetClearCount() ? data->clears[index] : SXmlClear{};
}

CXmlNode CXmlNode::AddChild(XmlText name, bool isDeclaration)
{
    if (name == nullptr)
        return CXmlNode();
    CXmlNode child(data, std::move(name), isDeclaration);
    delete[] std::exchange(data->index, nullptr);
    AddEntry(*data, data->children, data->childCount, XmlChildEntry, child.data);
    ++child.data->referenceCount; // the array's own
    return child;
}

void CXmlNode::AddAttribute(XmlText name, XmlText value)
{
    if (name == nullptr)
        return;
    AddEntry(*data, data->attributes, data->attributeCount, XmlAttributeEntry, SXmlAttribute{name.get(), value.get()});
    name.release();
    value.release();
}

void CXmlNode::AddText(XmlText text)
{
    if (text == nullptr)
        return;
    AddEntry(*data, data->texts, data->textCount, XmlTextEntry, static_cast<const char*>(text.get()));
    text.release();
}

void CXmlNode::AddClear(XmlText value, const char* openTag, const char* closeTag)
{
    if (value == nullptr)
        return;
    AddEntry(*data, data->clears, data->clearCount, XmlClearEntry, SXmlClear{value.get(), openTag, closeTag});
    value.release();
}

void CXmlNode::Compact()
{
    TrimRoom(data->children, data->childCount);
    TrimRoom(data->texts, data->textCount);
    TrimRoom(data->clears, data->clearCount);
    TrimRoom(data->attributes, data->attributeCount);
    TrimRoom(data->order, CountEntries(*data));
}

} // namespace Vellum
