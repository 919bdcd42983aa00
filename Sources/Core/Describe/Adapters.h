#pragma once

#include "Describe/Storage.h"

/// @file
/// What makes an object or a sequence of the contract from a value of the client's. They lie on the stack for the time
/// of one call. `Shape` knows what is inside:
///
///     static const char* GetTypeName()
///     static void WriteInside(const T& value, IDataWriter& writer, const SPlace& place)          or IContainerWriter
///     static void ReadInside<IsStrict>(T& value, IDataReader& reader, const SPlace& place)       or IContainerReader
namespace Vellum::Describing
{

template <class Shape, class T, class Interface, class Writer, class Reader>
class COut final : public Interface
{
public:
    COut(const T& source, const SPlace& at) : value(source), place(at) {}
    const char* GetTypeName() const override { return Shape::GetTypeName(); }
    void Write(Writer& writer) const override { Shape::WriteInside(value, writer, place); }
    void Read(Reader&) override {} ///< Nobody calls it

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
    void Write(Writer&) const override {} ///< Nobody calls it
    void Read(Reader& reader) override { Shape::template ReadInside<IsStrict>(value, reader, place); }

private:
    T& value;
    SPlace place;
};

/// What is stored as an object or as a sequence, by the interface that it takes of the contract.
template <class Shape, class T, class ForInterface, class Writer, class Reader, EElement ForElement>
struct SStoredInside
{
    using Interface = ForInterface;
    using Out = COut<Shape, T, Interface, Writer, Reader>;
    template <bool IsStrict>
    using In = CIn<Shape, T, Interface, Writer, Reader, IsStrict>;

    static constexpr EElement Element = ForElement;

    static void Write(const T& value, const auto& out)
    {
        out.Put(static_cast<const Interface&>(Out(value, out.GetPlace())));
    }
    template <class Place>
    static bool Read(T& value, const Place& in)
    {
        In<Place::IsStrict> adapter(value, in.GetPlace());
        return in.Get(static_cast<Interface&>(adapter));
    }
};

template <class Shape, class T>
using SStoredObject = SStoredInside<Shape, T, ISerializable, IDataWriter, IDataReader, EElement::Object>;
template <class Shape, class T>
using SStoredSequence =
    SStoredInside<Shape, T, ISerializableContainer, IContainerWriter, IContainerReader, EElement::Sequence>;

} // namespace Vellum::Describing
