#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "../Platform/CStringT.h"

#include "Groundwork/CbTypeName.h"

/// The node of a CbMapEx, and what a table needs to know of its keys: SKeyTraits tells the form in which they are
/// looked up, their hash and their equality, for each type that a key may have. The order of stored documents hangs on
/// the hashes.
namespace CbMapTypes
{

/// SAssociation: a node of a table. The table owns it; clients may change the value, and nothing else.
template <class Key, class Value>
struct SAssociation
{
    /// The key is copied, the value constructed from the arguments.
    template <class KeyView, class... Arguments>
    explicit SAssociation(const KeyView& keyView, Arguments&&... arguments)
        : key(keyView), value(std::forward<Arguments>(arguments)...)
    {
    }

    Key key;                            ///< What the node is found by
    Value value;                        ///< The client's
    SAssociation* next = nullptr;       ///< Next in the order of iteration, null at the end
    SAssociation* bucketNext = nullptr; ///< Next in the same bucket, null at the end
    std::uint64_t hash = 0;             ///< Of the key
};

/// @name FnvBasis, FnvPrime
/// The 64-bit offset basis and prime of FNV-1a, the hash of Fowler, Noll and Vo.
/// @{
inline constexpr std::uint64_t FnvBasis = 0xCBF29CE484222325u;
inline constexpr std::uint64_t FnvPrime = 0x100000001B3u;
/// @}

template <class Key>
struct SKeyTraits;

/// Numbers. Their hash is the 64-bit FNV-1a over the four bytes, least significant first.
template <>
struct SKeyTraits<unsigned int>
{
    /// A key as Find takes it.
    using View = unsigned int;

    /// Whether keys are texts.
    static constexpr bool IsText = false;

    /// The hash of a key.
    static std::uint64_t Hash(View key)
    {
        std::uint64_t hash = FnvBasis;
        for (int shift = 0; shift < 32; shift += 8)
            hash = (hash ^ ((key >> shift) & 0xFF)) * FnvPrime;
        return hash;
    }

    /// Whether the key of a node is the one that is looked for. The hashes aren't looked at.
    static bool Equal(std::uint64_t, unsigned int stored, std::uint64_t, View key) { return stored == key; }
};

/// Standard texts, NUL bytes included. Their hash is the 64-bit FNV-1a over the bytes.
template <>
struct SKeyTraits<std::string>
{
    /// A key as Find takes it.
    using View = std::string_view;

    /// Whether keys are texts.
    static constexpr bool IsText = true;

    /// The hash of a key.
    static std::uint64_t Hash(View key)
    {
        std::uint64_t hash = FnvBasis;
        for (const char byte : key)
            hash = (hash ^ static_cast<unsigned char>(byte)) * FnvPrime;
        return hash;
    }

    /// Whether the key of a node is the one that is looked for; each stands behind its hash.
    static bool Equal(std::uint64_t storedHash, const std::string& stored, std::uint64_t hash, View key)
    {
        return storedHash == hash && stored == key;
    }
};

/// Texts up to their first NUL. Their hash starts at 0 and is, for each byte, taken times 33 plus the byte, in 64 bits.
/// Bytes from 0x80 up count as negative.
template <>
struct SKeyTraits<ATL::CStringT<char>>
{
    /// A key as Find takes it: a text up to its first NUL.
    struct View : std::string_view
    {
        /// @name View
        /// The text must live as long as the view.
        /// @{
        View(const char* text) : std::string_view(text) {}
        View(const ATL::CStringT<char>& text) : std::string_view(text.GetString()) {}
        /// @}
    };

    /// Whether keys are texts.
    static constexpr bool IsText = true;

    /// The hash of a key.
    static std::uint64_t Hash(View key)
    {
        std::uint64_t hash = 0;
        for (const char byte : key)
            hash = hash * 33 + static_cast<std::uint64_t>(std::int64_t{static_cast<signed char>(byte)});
        return hash;
    }

    /// Whether the key of a node is the one that is looked for; each stands behind its hash.
    static bool Equal(std::uint64_t storedHash, const ATL::CStringT<char>& stored, std::uint64_t hash, View key)
    {
        return storedHash == hash && View(stored) == std::string_view(key);
    }
};

} // namespace CbMapTypes

template <class KeyType, class ValueType>
struct CbTypeName<CbMapTypes::SAssociation<KeyType, ValueType>>
{
    static constexpr auto Value =
        CbSpellTemplate<CbTypeName<KeyType>, CbTypeName<ValueType>>(CbText("struct CbMapTypes::SAssociation"));
};
