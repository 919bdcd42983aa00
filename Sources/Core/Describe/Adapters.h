#pragma once

#include "Describe/Storage.h"

// What makes an object or a sequence of the contract from a value of the client's. They lie on the stack for the time
// of one call. `Shape` knows what is inside:
//
//   static const char* GetTypeName()
//   static void WriteInside(const T& value, IDataWriter& writer, const SPlace& place)          or IContainerWriter
//   static void ReadInside<IsStrict>(T& value, IDataReader& reader, const SPlace& place)       or IContainerReader
namespace Vellum::Describing
{

template <class Shape, class T, class Interface, class Writer, class Reader>
class COut final : public Interface
{
public:
    COut(const T& source, const SPlace& at) : value(source), place(at) {}
    const char* GetTypeName() const override { return Shape::GetTypeName(); }
    void Write(Writer& writer) const override { Shape::WriteInside(value, writer, place); }
    void Read(Reader&) override {} // nobody calls it

private:
    const T& value;
    SPlace place;
};

template <class Shape, class T, class Interface, class Writer, class Reader, bool IsStrict>
class CIn final : public Interface
{
public:
    CIn(T& target, const SPlace& at) : value(target), place(at) {}
    const char* GetTypeName() const override { return Shape::GetTypeName(); }
    void Write(Writer&) const override {} // nobody calls it
    void Read(Reader& reader) override { Shape::template ReadInside<IsStrict>(value, reader, place); }

private:
    T& value;
    SPlace place;
};

template <class Shape, class T>
using CObjectOut = COut<Shape, T, ISerializable, IDataWriter, IDataReader>;
template <class Shape, class T, bool IsStrict>
using CObjectIn = CIn<Shape, T, ISerializable, IDataWriter, IDataReader, IsStrict>;
template <class Shape, class T>
using CSequenceOut = COut<Shape, T, ISerializableContainer, IContainerWriter, IContainerReader>;
template <class Shape, class T, bool IsStrict>
using CSequenceIn = CIn<Shape, T, ISerializableContainer, IContainerWriter, IContainerReader, IsStrict>;

// What is stored as an object.
template <class Shape, class T>
struct SStoredObject
{
    using Interface = ISerializable;
    using Out = CObjectOut<Shape, T>;
    template <bool IsStrict>
    using In = CObjectIn<Shape, T, IsStrict>;

    static constexpr EElement Element = EElement::Object;

    static void Write(const T& value, const auto& out)
    {
        out.Put(static_cast<const ISerializable&>(Out(value, out.GetPlace())));
    }
    template <class Place>
    static bool Read(T& value, const Place& in)
    {
        In<Place::IsStrict> adapter(value, in.GetPlace());
        return in.Get(static_cast<ISerializable&>(adapter));
    }
};

// What is stored as a sequence.
template <class Shape, class T>
struct SStoredSequence
{
    using Interface = ISerializableContainer;
    using Out = CSequenceOut<Shape, T>;
    template <bool IsStrict>
    using In = CSequenceIn<Shape, T, IsStrict>;

    static constexpr EElement Element = EElement::Sequence;

    static void Write(const T& value, const auto& out)
    {
        out.Put(static_cast<const ISerializableContainer&>(Out(value, out.GetPlace())));
    }
    template <class Place>
    static bool Read(T& value, const Place& in)
    {
        In<Place::IsStrict> adapter(value, in.GetPlace());
        return in.Get(static_cast<ISerializableContainer&>(adapter));
    }
};

} // namespace Vellum::Describing
