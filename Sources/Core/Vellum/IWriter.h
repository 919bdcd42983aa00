#pragma once

#include "../Platform/Export.h"

namespace Vellum
{

class ISerializable;
class ISerializableContainer;

/// IWriter: a document on its way out. Implemented by CWriterBinary, CWriterJson and CWriterXml.
///
/// - **Threads** A writer and its output belong to one thread at a time.
class VELLUM_API IWriter
{
public:
    virtual ~IWriter();

    /// @name Write
    /// Writes one complete document with the given root, whose Write is called exactly once. The output is complete
    /// when the call returns. What is raised, and what the output holds then, is told by each format.
    /// @{
    virtual void Write(const ISerializableContainer& root) = 0;
    virtual void Write(const ISerializable& root) = 0;
    /// @}

protected:
    IWriter() = default;
    IWriter(const IWriter&) = default;
    IWriter& operator=(const IWriter&) = default;
};

} // namespace Vellum
