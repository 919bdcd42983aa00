#include "Vellum/CReaderBinary.h"

#include <atomic>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbStreamReadBinaryBuffer.h"

#include "Vellum/CException.h"
#include "Vellum/IContainerReader.h"
#include "Vellum/IDataReader.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Vellum/src/BinaryParser.h"
#include "Vellum/src/BinaryTree.h"
#include "Vellum/src/KindOperations.h"

// A document becomes a tree of plain data. Data and container readers are made when a client asks, and only look things
// up.

namespace Vellum
{
namespace
{

// What a found value becomes in the client's argument.
template <class T>
void Deliver(const CBinaryTree&, const void* number, T& value)
{
    std::memcpy(&value, number, sizeof value);
}
void Deliver(const CBinaryTree&, const void* number, bool& value)
{
    value = *static_cast<const unsigned char*>(number) != 0;
}
void Deliver(const CBinaryTree&, const UValue& found, std::string& value)
{
    value.assign(found.text->units, found.text->count);
}
void Deliver(const CBinaryTree&, const UValue& found, std::wstring& value)
{
    value.assign(found.wideText->units, found.wideText->units + found.wideText->count);
}
void Deliver(const CBinaryTree&, const UValue& found, IDateTime& value)
{
    value.IDateTime::operator=(CbDateTime(found.ticks)); // the seven setters, whatever the class makes of assignment
}
void Deliver(const CBinaryTree& tree, const UValue& found, ISerializable& value);
void Deliver(const CBinaryTree& tree, const UValue& found, ISerializableContainer& value);

BlobRange ToRange(const SUnits<unsigned char>& blob)
{
    return blob.count == 0 ? BlobRange() : BlobRange(blob.units, blob.units + blob.count);
}

} // namespace

// The fields of one record.
class CDataReader final : public CReadOperations<CDataReader, IDataReader, const char*>
{
public:
    CDataReader(const CBinaryTree& tree, const SRecord& record) : tree(tree), record(record) {}

    std::uint32_t GetKeyCount() const override { return record.layout->count; }
    const char* GetKey(std::uint32_t index) const override
    {
        return tree.keys.GetText(record.layout->names[index].key);
    }
    BlobRange GetBlob(const char* key) override
    {
        const UValue* const found = find(key, TagBlob);
        return found == nullptr ? BlobRange() : ToRange(*found->blob);
    }

    template <class T>
    bool readValue(const char* key, T& value) const
    {
        const UValue* const found = find(key, TagOf<T>);
        if (found == nullptr)
            return false;
        if constexpr (IsNumber<T>)
            Deliver(tree, found->number.data(), value);
        else
            Deliver(tree, *found, value);
        return true;
    }

private:
    const UValue* find(const char* key, std::uint8_t tag) const
    {
        const SLayout& layout = *record.layout;
        const std::uint32_t position =
            layout.following != nullptr ? findFollowing(layout, key, tag) : layout.Find({findNumber(key), tag});
        return position == SLayout::NotFound ? nullptr : record.GetValues() + position;
    }

    // In a small layout: what was asked for after the same field of another record, or else any.
    std::uint32_t findFollowing(const SLayout& layout, const char* key, std::uint8_t tag) const
    {
        std::atomic<std::uint8_t>& following = layout.following[last.load(std::memory_order_relaxed)];
        std::uint32_t position = following.load(std::memory_order_relaxed);
        if (position >= layout.count || layout.names[position].tag != tag ||
            !tree.keys.Is(layout.names[position].key, key))
        {
            position = layout.Find({tree.keys.Find(key), tag});
            if (position == SLayout::NotFound)
                return position;
            following.store(static_cast<std::uint8_t>(position), std::memory_order_relaxed);
        }
        last.store(position + 1, std::memory_order_relaxed);
        return position;
    }

    // In a large one: keys are numbered in the order in which they were first written, and often read in it.
    std::uint32_t findNumber(const char* key) const
    {
        const std::uint32_t next = last.load(std::memory_order_relaxed);
        const std::uint32_t number = tree.keys.Is(next, key) ? next : tree.keys.Find(key);
        if (number != CBinaryKeys::Unknown)
            last.store(number + 1, std::memory_order_relaxed);
        return number;
    }

    const CBinaryTree& tree;
    const SRecord& record;
    mutable std::atomic<std::uint32_t> last{0}; // one more than the position or number that was found last: a guess
};

// The elements of one sequence.
class CContainerReader final : public CReadOperations<CContainerReader, IContainerReader, std::uint32_t>
{
public:
    CContainerReader(const CBinaryTree& tree, const SSequence& sequence) : tree(tree), sequence(sequence) {}

    BlobRange GetBlob(std::uint32_t index) override
    {
        return has(TagBlob, index) ? ToRange(*getValues()[index].blob) : BlobRange();
    }

    template <class T>
    bool readValue(std::uint32_t index, T& value) const
    {
        if (!has(TagOf<T>, index))
            return false;
        if constexpr (IsNumber<T>)
            Deliver(tree, static_cast<const unsigned char*>(sequence.elements) + index * sizeof(T), value);
        else
            Deliver(tree, getValues()[index], value);
        return true;
    }

private:
    bool has(std::uint8_t tag, std::uint32_t index) const { return index < sequence.count && sequence.tag == tag; }
    const UValue* getValues() const { return static_cast<const UValue*>(sequence.elements); }

    const CBinaryTree& tree;
    const SSequence& sequence;
};

namespace
{

void Deliver(const CBinaryTree& tree, const UValue& found, ISerializable& value)
{
    CDataReader reader(tree, *found.record);
    value.Read(reader);
}

void Deliver(const CBinaryTree& tree, const UValue& found, ISerializableContainer& value)
{
    CContainerReader reader(tree, *found.sequence);
    value.Read(reader);
}

std::unique_ptr<const CBinaryTree> Parse(CbStreamReadBinary& stream)
{
    auto tree = std::make_unique<CBinaryTree>();
    if (auto* const memory = dynamic_cast<CbStreamReadBinaryBuffer*>(&stream))
        CBinaryParser(*memory, *tree).Parse();
    else
        CBinaryParser(stream, *tree).Parse();
    return tree;
}

template <class Root>
void ReadRoot(const CBinaryTree& tree, Root& root)
{
    if (tree.rootTag != TagOf<Root>)
        throw CException(__FILE__, __LINE__, "Vellum::CReaderBinary::Read");
    Deliver(tree, tree.root, root);
}

} // namespace

CReaderBinary::CReaderBinary(CbStreamReadBinary& stream) : tree(Parse(stream)) {}
CReaderBinary::~CReaderBinary() = default;

void CReaderBinary::Read(ISerializable& root) const { ReadRoot(*tree, root); }

void CReaderBinary::Read(ISerializableContainer& root) const { ReadRoot(*tree, root); }

} // namespace Vellum
