#pragma once

#include <bit>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <utility>

#include "Groundwork/CbMapPolicyPlexManager.h"
#include "Groundwork/CbMapTypes.h"

// CbMapEx: hash table whose order of iteration is part of its contract.
//
// Order    is decided by the sequence of insertions and the hashes of the keys, never by addresses or by the
//          platform. Binary documents are emitted in it: whoever changes a hash, the growth or the chaining changes
//          the bytes of stored documents. It is buckets upwards and, within a bucket, the newest node first; when the
//          table doubles its buckets, nodes that stay together change places.
// Keys     are `unsigned int`, std::string or ATL::CStringT<char>. Hash and Equal only name the table; the functions
//          are those of CbMapTypes::SKeyTraits.
// Memory   Nodes come from a CbPlexManager and never move: a pointer from Find or FindOrInsert is good for the life of
//          the table. There is no erase. A new table has allocated nothing, and a table of few nodes has no array of
//          buckets: its ordered list is walked instead, which gives the same order. A table in which a walk gets long
//          is given an index; that takes keys that somebody has chosen, and they gain nothing: every operation stays
//          logarithmic.
// Errors   CbExceptionContainer when a block of nodes can't be had, std::bad_alloc when the buckets can't. A table
//          that couldn't double its buckets has the new node and stays in use; any other failed insertion changes
//          nothing.
// Threads  A table belongs to one thread at a time; tables that share a pool belong to one thread together.
//
// Between operations:
//  1. From `first`, `next` visits every node once: buckets upwards, each chain head to tail.
//  2. A node lies in the chain of bucket `hash & mask`. New nodes go to the head; a rehash turns chains round.
//  3. count * 4 < bucketCount * 3, but for a table that couldn't double.
template <class Key, class Value, int Reserved = 0, class Hash = std::hash<Key>, class Equal = std::equal_to<Key>,
          template <class, class, int, int, class> class Policy = CbMapPolicyInline>
class CbMapEx : public Policy<CbMapEx<Key, Value, Reserved, Hash, Equal, Policy>, CbMapTypes::SAssociation<Key, Value>,
                              0, 0, unsigned int>
{
    using Base = Policy<CbMapEx, CbMapTypes::SAssociation<Key, Value>, 0, 0, unsigned int>;
    using Traits = CbMapTypes::SKeyTraits<Key>;

public:
    // A node: key, value and the way to the next. Owned by the table.
    using SAssociation = CbMapTypes::SAssociation<Key, Value>;

    // The form in which keys are looked up: a number, or a view of a text.
    using KeyView = typename Traits::View;

    // How many buckets a table has from the start if it isn't told.
    static constexpr std::uint32_t DefaultBucketCount = 128;

    // An empty table. The number of buckets is rounded down to a power of two. What a policy needs of its own comes
    // behind it.
    template <class... PolicyArguments>
    explicit CbMapEx(std::uint32_t initialBucketCount = DefaultBucketCount, PolicyArguments&&... arguments)
        : Base(std::forward<PolicyArguments>(arguments)...), bucketCount(RoundDown(initialBucketCount))
    {
    }

    // Destroys keys and values. Their memory is the pool's.
    ~CbMapEx() { destroyNodes(); }

    CbMapEx(const CbMapEx&) = delete;
    CbMapEx& operator=(const CbMapEx&) = delete;

    // How many nodes there are.
    std::uint32_t GetCount() const { return count; }

    // A power of two. There are fewer than three quarters as many nodes, unless the table couldn't double.
    std::uint32_t GetBucketCount() const { return bucketCount; }

    // The first node in the order of iteration, null in an empty table. The others follow along `next`.
    SAssociation* GetFirst() const { return first; }

    // The node of a key, or null when the key isn't there. Text keys may also be given as const char*, up to the first
    // NUL.
    SAssociation* Find(const KeyView& key) const
    {
        std::uint32_t steps = 0;
        return count == 0 ? nullptr : find(key, Traits::Hash(key), steps);
    }

    // Like Find, but inserts a missing key with a default-constructed value. A value found stays as it is.
    SAssociation* FindOrInsert(const KeyView& key) { return FindOrEmplace(key).first; }

    // Like FindOrInsert, but a missing key's value is constructed from the arguments. The truth value tells whether the
    // node is new.
    template <class... Arguments>
    std::pair<SAssociation*, bool> FindOrEmplace(const KeyView& key, Arguments&&... arguments)
    {
        const std::uint64_t hash = Traits::Hash(key);
        std::uint32_t steps = 0;
        if (SAssociation* const found = count == 0 ? nullptr : find(key, hash, steps))
            return {found, false};
        if (buckets == nullptr && count >= MaxListLength())
            makeBuckets();
        SAssociation* const before = buckets == nullptr ? nullptr : findBefore(hash, steps);
        if (steps > MaxSteps && index == nullptr)
            makeIndex();
        SAssociation* const node = makeNode(key, hash, std::forward<Arguments>(arguments)...);
        if (buckets == nullptr)
            linkIntoList(*node);
        else
            linkIntoBuckets(*node, before);
        ++count;
        if (count * 4 >= bucketCount * 3)
            rehash();
        return {node, true};
    }

    // Empties a table whose nodes go back to their pool. It is then as a new one with DefaultBucketCount buckets.
    void Clear() noexcept requires Base::RecyclesNodes
    {
        destroyNodes();
        index.reset();
        buckets.reset();
        first = nullptr;
        count = 0;
        bucketCount = DefaultBucketCount;
    }

private:
    // What takes the place of walks in a table whose keys were chosen to make walks long.
    struct SIndex
    {
        std::map<KeyView, SAssociation*> nodes;
        std::map<std::uint32_t, SAssociation*> tails; // the last node of each bucket that holds any
    };

    // No walk gets as long by chance.
    static constexpr std::uint32_t MaxSteps = 256;

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
        {
            const auto found = index->nodes.find(key);
            return found == index->nodes.end() ? nullptr : found->second;
        }
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
        SAssociation* node = nullptr;
        try
        {
            node = std::construct_at(storage, key, std::forward<Arguments>(arguments)...);
            node->hash = hash;
            if (index != nullptr)
                enter(*index, *node, bucketCount);
            return node;
        }
        catch (...)
        {
            if (node != nullptr)
                std::destroy_at(node);
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

    void linkIntoBuckets(SAssociation& node, SAssociation* before)
    {
        SAssociation*& link = before == nullptr ? first : before->next;
        node.next = link;
        link = &node;
        SAssociation*& head = buckets[bucketOf(node)];
        node.bucketNext = head;
        head = &node;
    }

    // The node that a new one of that hash follows: the last of the nearest lower bucket that holds any. Null if the
    // new one is the first of all.
    SAssociation* findBefore(std::uint64_t hash, std::uint32_t& steps) const
    {
        std::uint32_t bucket = static_cast<std::uint32_t>(hash) & (bucketCount - 1);
        if (first == nullptr || bucketOf(*first) >= bucket)
            return nullptr;
        if (index != nullptr)
            return std::prev(index->tails.lower_bound(bucket))->second;
        do
            ++steps;
        while (buckets[--bucket] == nullptr);
        SAssociation* tail = buckets[bucket];
        for (; tail->bucketNext != nullptr; ++steps)
            tail = tail->bucketNext;
        return tail;
    }

    void makeIndex()
    {
        auto made = std::make_unique<SIndex>();
        for (std::uint32_t bucket = 0; bucket < bucketCount; ++bucket)
            for (SAssociation* node = buckets[bucket]; node != nullptr; node = node->bucketNext)
            {
                made->nodes.emplace(node->key, node);
                made->tails.insert_or_assign(bucket, node);
            }
        index = std::move(made);
    }

    // Both or none. A bucket's first node to come stays its last.
    static void enter(SIndex& index, SAssociation& node, std::uint32_t bucketCount)
    {
        const auto entered = index.nodes.emplace(node.key, &node).first;
        try
        {
            index.tails.emplace(static_cast<std::uint32_t>(node.hash) & (bucketCount - 1), &node);
        }
        catch (...)
        {
            index.nodes.erase(entered);
            throw;
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
        if (index != nullptr)
        {
            std::map<std::uint32_t, SAssociation*> tails; // the first to come to a bucket will be its last
            for (SAssociation* node = first; node != nullptr; node = node->next)
                tails.emplace(static_cast<std::uint32_t>(node->hash) & (newCount - 1), node);
            index->tails = std::move(tails);
        }
        bucketCount = newCount;
        buckets = std::move(newBuckets);
        for (SAssociation* node = first; node != nullptr;)
        {
            SAssociation* const next = node->next;
            SAssociation*& head = buckets[bucketOf(*node)];
            node->bucketNext = head;
            head = node;
            node = next;
        }
        linkChains();
    }

    // Makes one list of all chains, buckets upwards.
    void linkChains()
    {
        SAssociation** link = &first;
        for (std::uint32_t bucket = 0; bucket < bucketCount; ++bucket)
            for (SAssociation* node = buckets[bucket]; node != nullptr; node = node->bucketNext)
            {
                *link = node;
                link = &node->next;
            }
        *link = nullptr;
    }

    void destroyNodes() noexcept
    {
        for (SAssociation* node = first; node != nullptr;)
        {
            SAssociation* const next = node->next;
            std::destroy_at(node);
            if constexpr (Base::RecyclesNodes)
                this->getPool().recycleElement(node);
            node = next;
        }
    }

    std::unique_ptr<SAssociation*[]> buckets; // heads of the chains; null while the table is a list
    std::unique_ptr<SIndex> index;            // null unless walks would be long
    SAssociation* first = nullptr;            // head of the lowest bucket that holds a node
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
