#pragma once

#include <map>
#include <string_view>
#include <utility>

#include "Groundwork/CbArray.h"

#include "Vellum/BlobRange.h"

#include "Vellum/src/Base64Text.h"

namespace Vellum
{

// CDecodedBlobs: the blobs that a reader of a text document has handed out, which live as long as the reader. They are
// known by where their texts begin. Most readers have one blob if any, so only the others need a table.
class CDecodedBlobs
{
public:
    // The bytes of a Base64 text, which stays where it is. They are decoded once. Raises CException
    // ("Vellum::Base64::Decode") for a text without bytes.
    BlobRange Decode(std::string_view text)
    {
        if (first.GetSize() != 0 && text.data() == firstText)
            return getRange(first);
        if (const auto found = others.find(text.data()); found != others.end())
            return getRange(found->second);
        return getRange(keep(text.data(), Base64::DecodeText(text)));
    }

private:
    static BlobRange getRange(const CbArray<unsigned char>& bytes) { return {bytes.GetData(), bytes.GetEnd()}; }

    const CbArray<unsigned char>& keep(const char* text, CbArray<unsigned char>&& bytes)
    {
        if (first.GetSize() != 0)
            return others.emplace(text, std::move(bytes)).first->second;
        firstText = text;
        return first = std::move(bytes);
    }

    CbArray<unsigned char> first; // empty as long as there is none: no blob is
    const char* firstText = nullptr;
    std::map<const char*, CbArray<unsigned char>> others;
};

} // namespace Vellum
