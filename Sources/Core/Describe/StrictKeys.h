#pragma once

#include "Describe/Places.h"

/// @file
/// Strict: which keys an object may have.
namespace Vellum::Describing
{

/// Raises if the object has the key, so that what stands under it is of another kind than what was asked for.
VELLUM_API void CheckAbsence(const IDataReader& reader, const char* key, const SPlace& place);

/// Whether two keys are the same in a document: in XML without regard to case.
VELLUM_API bool AreEqualKeys(const SPlace& place, const char* first, const char* second);

/// Raises for the first key of the object that `isKnown` says false to.
template <class Function>
void CheckKeys(const IDataReader& reader, const SPlace& place, const Function& isKnown)
{
    const std::uint32_t count = reader.GetKeyCount();
    for (std::uint32_t index = 0; index < count; ++index)
        if (const char* const key = reader.GetKey(index); !isKnown(key))
            RaiseAt(SPlace{place.document, &place, key}, "Nothing is known by this name.");
}

} // namespace Vellum::Describing
