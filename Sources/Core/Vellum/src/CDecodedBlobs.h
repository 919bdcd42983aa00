#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "Groundwork/CbArray.h"
#include "Groundwork/CbMapEx.h"

#include "Vellum/BlobRange.h"

#include "Vellum/src/Base64Text.h"

namespace Vellum
{

// CDecodedBlobs: the blobs that a reader of a text document has handed out, which live as long as the reader. They are
// known by the place of their value. Most readers have one blob if any, so only the others need a table.
class CDecodedBlobs
{
public:
    // The bytes of the Base64 text at a place. They are decoded once. Raises CException ("Vellum::Base64::Decode") for
    // a text without bytes.
    BlobRange Decode(std::uint32_t place, std::string_view text)
    {
        if (first.GetSize() != 0 && place == firstPlace)
            return getRange(first);
        if (const auto* const found = others == nullptr ? nullptr : others->Find(place))
            return getRange(found->value);
        CbArray<unsigned char> bytes(Base64::GetDecodedSizeOf(text));
        Base64::DecodeText(text, bytes.GetData(), bytes.GetSize());
        return getRange(keep(place, std::move(bytes)));
    }

private:
    using Table = CbMapEx<unsigned int, CbArray<unsigned char>>;

    static BlobRange getRange(const CbArray<unsigned char>& bytes) { return {bytes.GetData(), bytes.GetEnd()}; }

    const CbArray<unsigned char>& keep(std::uint32_t place, CbArray<unsigned char>&& bytes)
    {
        if (first.GetSize() == 0)
        {
            firstPlace = place;
            return first = std::move(bytes);
        }
        if (others == nullptr)
            others = std::make_unique<Table>();
        return others->FindOrEmplace(place, std::move(bytes)).first->value;
    }

    CbArray<unsigned char> first; // empty as long as there is none: no blob is
    std::uint32_t firstPlace = 0;
    std::unique_ptr<Table> others; // null as long as one is enough
};

} // namespace Vellum
