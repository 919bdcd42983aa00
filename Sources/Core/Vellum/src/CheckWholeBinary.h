#pragma once

#include <cstddef>
#include <string>

#include "Groundwork/CbStreamReadBinaryBuffer.h"

#include "Vellum/CReaderBinary.h"
#include "Vellum/SOutcome.h"

namespace Vellum
{

// Checks a binary document behind which nothing may follow.
inline SOutcome CheckWholeBinary(const void* data, std::size_t size)
{
    CbStreamReadBinaryBuffer stream(data, size);
    const SOutcome outcome = CReaderBinary::Check(stream);
    const std::size_t left = stream.GetLeft();
    if (!outcome.isAccepted || left == 0)
        return outcome;
    return {false, size - left, 0, 0,
            "Expected the end of the document, found " + std::to_string(left) +
                (left == 1 ? " more byte." : " more bytes.")};
}

} // namespace Vellum
