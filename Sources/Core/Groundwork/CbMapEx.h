#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "Groundwork/CbMapIndex.h"
#include "Groundwork/CbMapPolicyPlexManager.h"
#include "Groundwork/CbMapTypes.h"

/// CbMapEx: hash table whose order of iteration is part of its contract.
///
/// - **Order** is decided by the sequence of insertions and the hashes of the keys, never by addresses or by the
///   platform. Binary documents are emitted in it: whoever changes a hash, the growth or the chaining changes the bytes
///   of stored documents. It is buckets upwards and, within a bucket, the newest node first; when the table doubles its
///   buckets, nodes that stay together change places.
/// - **Keys** are `unsigned int`, std::string or `ATL::CStringT<char>`. Hash and Equal only name the table; the
///   functions are those of CbMapTypes::SKeyTraits.
/// - **Memory** Nodes come from a CbPlexManager and never move: a pointer from Find or FindOrInsert is good for the
///   life of the table. There is no erase. A new table has allocated nothing, and a table of few nodes has no array of
///   buckets: its ordered list is walked instead, which gives the same order.
/// - **Time** A table in which keys are found by longer walks than chance makes them, here and there or on the whole,
///   is given an index. That takes keys that somebody has chosen, and they gain nothing. The list of all nodes is put
///   together when somebody asks for its first one, once after any number of insertions; that takes a look at each
///   bucket.
/// - **Errors** CbExceptionContainer when a block of nodes can't be had, std::bad_alloc when the buckets can't. A table
///   that couldn't double its buckets has the new node and stays in use; any other failed insertion changes nothing.
/// - **Threads** A table belongs to one thread at a time; tables that share a pool belong to one thread together.
///
/// Between operations:
///
/// 1. From GetFirst, `next` visits every node once: buckets upwards, each chain head to tail.
/// 2. A node lies in the chain of bucket `hash & mask`. New nodes go to the head; a rehash turns chains round.
/// 3. count * 4 < bucketCount * 3, but for a table that couldn't double.
template <class Key, class Value, int Reserved = 0, class Hash = std::hash<Key>, class Equal = std::equal_to<Key>,
          template <class, class, int, int, class> class Policy = CbMapPolicyInline>
class CbMapEx : public Policy<CbMapEx<Key, Value, Reserved, Hash, Equal, Policy>, CbMapTypes::SAssociation<Key, Value>,
                              0, 0, unsigned int>
{
    using Base = Policy<CbMapEx, CbMapTypes::SAssociation<Key, Value>, 0, 0, unsigned int>;
    using Traits = CbMapTypes::SKeyTraits<Key>;
    using Index = CbMapIndex<Traits, CbMapTypes::SAssociation<Key, Value>>;

public:
    /// A node: key, value and the way to the next. Owned by the table.
    using SAssociation = CbMapTypes::SAssociation<Key, Value>;

    /// The form in which keys are looked up: a number, or a view of a text.
    using KeyView = typename Traits::View;

    /// How many buckets a table has from the start if it isn't told.
    static constexpr std::uint32_t DefaultBucketCount = 128;

    /// An empty table. The number of buckets is rounded down to a power of two. What a policy needs of its own comes
    /// behind it.
    template <class... PolicyArguments>
    explicit CbMapEx(std::uint32_t initialBucketCount = DefaultBucketCount, PolicyArguments&&... arguments)
        : Base(std::forward<PolicyArguments>(arguments)...), bucketCount(RoundDown(initialBucketCount))
    {
    }

    /// Destroys keys and values. Their memory is the pool's.
    ~CbMapEx() { destroyNodes(); }

    CbMapEx(const CbMapEx&) = delete;
    CbMapEx& operator=(const CbMapEx&) = delete;

    /// How many nodes there are.
    std::uint32_t GetCount() const { return count; }

    /// A power of two. There are fewer than three quarters as many nodes, unless the table couldn't double.
    std::uint32_t GetBucketCount() const { return bucketCount; }

    /// The first node in the order of iteration, null in an empty table. The others follow along `next`.
    SAssociation* GetFirst() const
    {
        if (!isLinked)
            linkChains();
        return first;
    }

    /// The node of a key, or null when the key isn't there. Text keys may also be given as const char*, up to the first
    /// NUL.
    SAssociation* Find(const KeyView& key) const
    {
        std::uint32_t steps = 0;
        return count == 0 ? nullptr : find(key, Traits::Hash(key), steps);
    }

    /// Like Find, but inserts a missing key with a default-constructed value. A value found stays as it is.
    SAssociation* FindOrInsert(const KeyView& key) { return FindOrEmplace(key).first; }

    /// Like FindOrInsert, but a missing key's value is constructed from the arguments. The truth value tells whether
    /// the node is new.
    template <class... Arguments>
    std::pair<SAssociation*, bool> FindOrEmplace(const KeyView& key, Arguments&&... arguments)
    {
        const std::uint64_t hash = Traits::Hash(key);
        std::uint32_t steps = 0;
        if (SAssociation* const found = count == 0 ? nullptr : find(key, hash, steps))
            return {found, false};
        if (buckets == nullptr && count >= MaxListLength())
            makeBuckets();
        noteWalk(steps);
        SAssociation* const node = makeNode(key, hash, std::forward<Arguments>(arguments)...);
        if (buckets == nullptr)
            linkIntoList(*node);
        else
            linkIntoBucket(*node);
        if (index != nullptr)
            index->Enter(*node);
        ++count;
        if (count * 4 >= bucketCount * 3)
            rehash();
        return {node, true};
    }

private:
    // No walk gets as long by chance, and no insertions into a table as large on the average.
    static constexpr std::uint32_t MaxWalk = 32;
    static constexpr std::uint32_t MaxAverageWalk = 2;

    static std::uint32_t RoundDown(std::uint32_t count) { return count == 0 ? 1 : std::bit_floor(count); }

    // How long the list may get before it pays to have buckets. Tables that start with few buckets have them at once.
    std::uint32_t MaxListLength() const { return bucketCount >= DefaultBucketCount ? 16 : 0; }

    std::uint32_t bucketOf(const SAssociation& node) const
    {
        return static_cast<std::uint32_t>(node.hash) & (bucketCount - 1);
    }

    SAssociation* find(const KeyView& key, std::uint64_t hash, std::uint32_t& steps) const
    {
        if (index != nullptr)
            return index->Find(key, hash);
        const bool isList = buckets == nullptr;
        SAssociation* node = isList ? first : buckets[static_cast<std::uint32_t>(hash) & (bucketCount - 1)];
        for (; node != nullptr && !Traits::Equal(node->hash, node->key, hash, key); ++steps)
            node = isList ? node->next : node->bucketNext;
        return node;
    }

    template <class... Arguments>
    SAssociation* makeNode(const KeyView& key, std::uint64_t hash, Arguments&&... arguments)
    {
        SAssociation* const storage = this->getPool().getFreeElement();
        try
        {
            SAssociation* const node = std::construct_at(storage, key, std::forward<Arguments>(arguments)...);
            node->hash = hash;
            return node;
        }
        catch (...)
        {
            this->getPool().recycleElement(storage);
            throw;
        }
    }

    // A new node goes in front of all nodes of its own bucket and of higher ones.
    void linkIntoList(SAssociation& node)
    {
        const std::uint32_t bucket = bucketOf(node);
        SAssociation** link = &first;
        while (*link != nullptr && bucketOf(**link) < bucket)
            link = &(*link)->next;
        node.next = *link;
        node.bucketNext = node.next != nullptr && bucketOf(*node.next) == bucket ? node.next : nullptr;
        *link = &node;
    }

    void linkIntoBucket(SAssociation& node)
    {
        SAssociation*& head = buckets[bucketOf(node)];
        node.bucketNext = head;
        head = &node;
        isLinked = false;
    }

    // Called before a new node is made, with the steps that its key was looked for in vain. There is an index with room
    // for the node afterwards, or no need for one.
    void noteWalk(std::uint32_t steps)
    {
        if (index != nullptr)
            return index->Reserve(count + 1);
        walked += steps;
        if (steps <= MaxWalk && walked <= MaxWalk * MaxWalk + std::uint64_t{MaxAverageWalk} * count)
            return;
        index = std::make_unique<Index>(count + 1);
        forEachNode([&](SAssociation& node) { index->Enter(node); });
    }

    // Visits all nodes, those of one chain from head to tail. What is called may do with its node as it likes. Several
    // chains are followed at once, so that the processor needn't wait for the memory of one node after the other.
    template <class Visit>
    void forEachNode(const Visit& visit) const
    {
        const auto pass = [&](SAssociation*& node, SAssociation* following) { visit(*std::exchange(node, following)); };
        if (buckets == nullptr)
            for (SAssociation* node = first; node != nullptr;)
                pass(node, node->next);
        std::array<SAssociation*, 8> lanes{};
        bool isDone = buckets == nullptr;
        for (std::uint32_t bucket = 0; !isDone;)
        {
            isDone = true;
            for (SAssociation*& node : lanes)
            {
                while (node == nullptr && bucket < bucketCount)
                    node = buckets[bucket++];
                if (node == nullptr)
                    continue;
                isDone = false;
                pass(node, node->bucketNext);
            }
        }
    }

    // Gives a table that was a list its buckets. The chains are there already.
    void makeBuckets()
    {
        buckets = std::make_unique<SAssociation*[]>(bucketCount);
        for (SAssociation* node = first; node != nullptr; node = node->next)
            if (SAssociation*& head = buckets[bucketOf(*node)]; head == nullptr)
                head = node;
    }

    // Doubles the buckets. The nodes are taken in their old order and each is put at the head of its new chain.
    void rehash()
    {
        if (bucketCount > std::numeric_limits<std::uint32_t>::max() / 2)
            throw std::bad_array_new_length();
        const std::uint32_t newCount = std::bit_floor(bucketCount * 2);
        auto newBuckets = std::make_unique<SAssociation*[]>(newCount);
        forEachNode(
            [&](SAssociation& node)
            {
                SAssociation*& head = newBuckets[static_cast<std::uint32_t>(node.hash) & (newCount - 1)];
                node.bucketNext = head;
                head = &node;
            });
        bucketCount = newCount;
        buckets = std::move(newBuckets);
        isLinked = false;
    }

    // The first node in that bucket and those above.
    SAssociation* firstFrom(std::uint32_t bucket) const
    {
        while (bucket < bucketCount && buckets[bucket] == nullptr)
            ++bucket;
        return bucket < bucketCount ? buckets[bucket] : nullptr;
    }

    // Makes one list of all chains, buckets upwards.
    void linkChains() const
    {
        first = firstFrom(0);
        forEachNode([&](SAssociation& node)
                    { node.next = node.bucketNext != nullptr ? node.bucketNext : firstFrom(bucketOf(node) + 1); });
        isLinked = true;
    }

    void destroyNodes() noexcept
    {
        forEachNode([](SAssociation& node) { std::destroy_at(&node); });
    }

    std::unique_ptr<SAssociation*[]> buckets; // heads of the chains; null while the table is a list
    std::unique_ptr<Index> index;             // null unless walks would be long
    mutable SAssociation* first = nullptr;    // head of the lowest bucket that holds a node, if all nodes are linked
    mutable bool isLinked = true;             // always true while the table is a list
    std::uint64_t walked = 0;                 // steps that all insertions have taken
    std::uint32_t count = 0;
    std::uint32_t bucketCount; // a power of two; the mask is one less
};

template <class Key, class MappedValue, int Reserved, class Hash, class Equal,
          template <class, class, int, int, class> class Policy>
struct CbTypeName<CbMapEx<Key, MappedValue, Reserved, Hash, Equal, Policy>>
{
    static constexpr auto Value =
        CbSpellTemplate<CbTypeName<Key>, CbTypeName<MappedValue>, CbZeroName, CbTypeName<Hash>, CbTypeName<Equal>>(
            CbText("class CbMapEx"));
};
