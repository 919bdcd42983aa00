#pragma once

#include "../Platform/Export.h"

namespace Vellum
{

class ISerializable;
class ISerializableContainer;

/// IReader: a document on its way in. Implemented by CReaderBinary, CReaderJson and CReaderXml.
///
/// - **Threads** Reading changes nothing in the reader object.
class VELLUM_API IReader
{
public:
    virtual ~IReader();

    /// @name Read
    /// Fills the given root, which must be of the kind that the document holds, by calling its Read exactly once. May
    /// be repeated, with the same result. What is raised for a bad document or the other kind is told by each format.
    /// @{
    virtual void Read(ISerializableContainer& root) const = 0;
    virtual void Read(ISerializable& root) const = 0;
    /// @}

protected:
    IReader() = default;
    IReader(const IReader&) = default;
    IReader& operator=(const IReader&) = default;
};

} // namespace Vellum
