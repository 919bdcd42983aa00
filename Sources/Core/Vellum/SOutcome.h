#pragma once

#include <cstdint>
#include <string>

namespace Vellum
{

/// What the Check of a reader has found out about a document.
struct SOutcome
{
    /// Whether Read takes the document, whatever its client asks for. The fields below tell nothing then.
    bool isAccepted = true;

    /// Where it can't be taken, in bytes; 0 is the first. Of a binary document that is counted from where it begins in
    /// the stream.
    std::uint64_t offset = 0;

    /// The same in a text: lines end with LF, the first is 1. 0 in a binary document.
    std::uint32_t line = 0;

    /// In that line, in bytes; the first is 1. 0 in a binary document.
    std::uint32_t column = 0;

    /// What is expected there, and what there is, in one English sentence: `Expected a colon, found "1".`
    std::string reason = {};

    /// The keys and indices that lead to the place, as far as they are known: `lines[3].price`.
    std::string path = {};
};

} // namespace Vellum
