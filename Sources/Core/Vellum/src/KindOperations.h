#pragma once

#include "Vellum/src/ValueKinds.h"

// The eighteen virtual operations of the four field interfaces, made from the list of kinds. A class that derives from
// one of these bases supplies one template or overload set in their place:
//
//   CWriteOperations<Derived, IDataWriter, const char*>    void writeValue(const char* key, value)
//   CWriteOperations<Derived, IContainerWriter>            void writeValue(value)
//   CReadOperations<Derived, IDataReader, const char*>     bool readValue(const char* key, T& value) const
//   CReadOperations<Derived, IContainerReader, uint32>     bool readValue(uint32 index, T& value) const
//
// A written value arrives as a number, `const std::string&`, `const std::wstring&`, `const IDateTime&`,
// `const SBlob&`, `const ISerializable&` or `const ISerializableContainer&`. GetBlob, GetKey and GetKeyCount are left
// to the derived class, which must make the operations of the interface reachable for its base: a friend declaration,
// or public ones.
namespace Vellum
{

template <class Derived, class Base, class Kind, class... Key>
class CWriteOperation : public Base
{
public:
    using Base::Base;
    using Base::Write;
    void Write(Key... key, KindArgument<typename Kind::Type> value) final
    {
        static_cast<Derived&>(*this).writeValue(key..., value);
    }
};

template <class Derived, class Base, std::uint8_t Tag, class... Key>
class CWriteOperation<Derived, Base, SKind<SBlob, Tag>, Key...> : public Base
{
public:
    using Base::Base;
    using Base::Write;
    void Write(Key... key, std::size_t size, const void* data) final
    {
        static_cast<Derived&>(*this).writeValue(key..., SBlob{size, data});
    }
};

template <class Derived, class Base, class Kind, class Key>
class CReadOperation : public Base
{
public:
    using Base::Read;
    bool Read(Key key, typename Kind::Type& value) const final
    {
        return static_cast<const Derived&>(*this).readValue(key, value);
    }
};

// Blobs have no Read.
template <class Derived, class Base, std::uint8_t Tag, class Key>
class CReadOperation<Derived, Base, SKind<SBlob, Tag>, Key> : public Base
{
};

// One level of inheritance for each kind, down to the interface.
template <class Kinds, class Derived, class Interface, class... Key>
struct SWriteChain
{
    using Type = Interface;
};

template <class Kind, class... Rest, class Derived, class Interface, class... Key>
struct SWriteChain<SKindList<Kind, Rest...>, Derived, Interface, Key...>
{
    using Base = typename SWriteChain<SKindList<Rest...>, Derived, Interface, Key...>::Type;
    using Type = CWriteOperation<Derived, Base, Kind, Key...>;
};

template <class Kinds, class Derived, class Interface, class Key>
struct SReadChain
{
    using Type = Interface;
};

template <class Kind, class... Rest, class Derived, class Interface, class Key>
struct SReadChain<SKindList<Kind, Rest...>, Derived, Interface, Key>
{
    using Base = typename SReadChain<SKindList<Rest...>, Derived, Interface, Key>::Type;
    using Type = CReadOperation<Derived, Base, Kind, Key>;
};

template <class Derived, class Interface, class... Key>
using CWriteOperations = typename SWriteChain<ValueKinds, Derived, Interface, Key...>::Type;

template <class Derived, class Interface, class Key>
using CReadOperations = typename SReadChain<ValueKinds, Derived, Interface, Key>::Type;

} // namespace Vellum
