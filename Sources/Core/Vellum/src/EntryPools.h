#pragma once

#include "Groundwork/CbArray.h"
#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbMapTypes.h"
#include "Groundwork/CbPlexManager.h"

#include "Vellum/src/TypeNames.h"
#include "Vellum/src/ValueKinds.h"

namespace Vellum
{

// What the table of a kind holds in a binary record, as far as anybody can tell. Object and Sequence are what nested
// ones are kept as.
template <class T, class Object, class Sequence>
struct STableOf
{
    using Value = T;
};
template <class Object, class Sequence>
struct STableOf<IDateTime, Object, Sequence>
{
    using Value = CbDateTime;
};
template <class Object, class Sequence>
struct STableOf<SBlob, Object, Sequence>
{
    using Value = CbArray<unsigned char>;
};
template <class Object, class Sequence>
struct STableOf<ISerializable, Object, Sequence>
{
    using Value = Object;
};
template <class Object, class Sequence>
struct STableOf<ISerializableContainer, Object, Sequence>
{
    using Value = Sequence;
};

// The pool of such a table's entries. It names the failure of their memory.
template <class Key, class T, class Object, class Sequence>
using EntryPool =
    CbPlexManager<CbMapTypes::SAssociation<Key, typename STableOf<T, Object, Sequence>::Value>, 0, unsigned int>;

} // namespace Vellum
