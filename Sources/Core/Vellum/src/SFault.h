#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Vellum/src/PathText.h"

namespace Vellum
{

// Why a document can't be taken, or a value can't be written: thrown in the depth, and told by whoever has begun.
struct SFault
{
    std::uint64_t offset; // of a document that is read, in bytes from its beginning
    std::string reason;   // a sentence: `Expected a colon, found "1".`
    std::string path = {};
};

// Calls the function, and puts a piece in front of the path of a fault that comes out of it. `step` makes the piece,
// for a fault alone.
template <class Step, class Function>
void UnderStep(const Step& step, const Function& function)
try
{
    function();
}
catch (SFault& fault)
{
    const bool isPlain = fault.path.empty() || fault.path.front() == '[';
    fault.path = step() + (isPlain ? "" : ".") + fault.path;
    throw;
}

template <class Function>
void UnderKey(std::string_view key, const Function& function)
{
    UnderStep([&] { return std::string(key); }, function);
}

template <class Function>
void UnderIndex(std::uint64_t index, const Function& function)
{
    UnderStep([&] { return ShowIndex(index); }, function);
}

} // namespace Vellum
