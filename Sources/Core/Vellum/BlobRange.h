#pragma once

#include <utility>

namespace Vellum
{

/// The bytes of a blob, begin and end (one past the last byte). Both are null for a blob that isn't there, and for an
/// empty one, which JSON raises for instead. The reader that handed the pair out owns the bytes.
using BlobRange = std::pair<const unsigned char*, const unsigned char*>;

} // namespace Vellum
