#pragma once

#include "../Platform/Export.h"

namespace Vellum
{

class IContainerReader;
class IContainerWriter;

/// ISerializableContainer: a client object that is a sequence of values. Threads and errors are those of ISerializable.
class VELLUM_API ISerializableContainer
{
public:
    virtual ~ISerializableContainer();

    /// The sequence's type name, never null. The text is copied at once, so it need only be valid until the next call.
    virtual const char* GetTypeName() const = 0;

    /// Hands all elements to the writer, first to last. The writer is good for this call only.
    virtual void Write(IContainerWriter& writer) const = 0;

    /// Takes the elements from the reader, index 0, 1, 2 and so on until the reader returns false: there is no count.
    /// The reader and the blobs that it hands out are good for this call only.
    virtual void Read(IContainerReader& reader) = 0;

protected:
    ISerializableContainer() = default;
    ISerializableContainer(const ISerializableContainer&) = default;
    ISerializableContainer& operator=(const ISerializableContainer&) = default;
};

} // namespace Vellum
