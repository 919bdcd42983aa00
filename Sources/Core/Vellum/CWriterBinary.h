#pragma once

#include "../Platform/Export.h"

#include "Groundwork/CbStreamWriteBinary.h"

#include "Vellum/IWriter.h"

namespace Vellum
{

/// CWriterBinary: writes client objects as binary documents; [Docs/BinaryFormat.md](Docs/BinaryFormat.md) has the
/// format.
///
/// - **Phases** The client's Write is called first and the whole document gathered in memory; only then is it emitted.
///   A failure in the first phase, the client's or the writer's, leaves the stream untouched.
/// - **Bytes** Two documents of equal calls are equal byte for byte, on every system.
/// - **Repeats** A key written twice in one kind has the later value. Under two kinds it is two fields.
/// - **Texts** End at their first NUL.
/// - **Limits** A blob, the bytes of a text, a count and the bytes of one sequence fit 32 bits. Depth is limited by the
///   stack alone; readers follow 1024 levels.
/// - **Errors** CException "Vellum::CContainerWriterBinary::write" for an element of kind bool to date, and
///   "Vellum::CContainerWriterBinary::Write" for a blob, object or sequence, that isn't of the kind of the sequence's
///   first element. CException "Vellum::CDataWriterBinary::Write" or "Vellum::CContainerWriterBinary::Write" for what
///   passes these limits. CbExceptionContainer when nodes can't be had. What the client and the stream raise passes
///   through. An element whose Write raised, while the client's own code went on, isn't in the document.
/// - **Threads** A writer and its stream belong to one thread at a time.
class VELLUM_API CWriterBinary : public IWriter
{
public:
    /// The stream is the client's and must outlive the writer. Nothing is written yet.
    explicit CWriterBinary(CbStreamWriteBinary& stream);

    /// The copy writes to the same stream.
    CWriterBinary(const CWriterBinary& other);
    CWriterBinary& operator=(const CWriterBinary&) = delete;

    /// Neither flushes nor closes the stream.
    ~CWriterBinary() override;

    /// @name Write
    /// Append one complete document at the stream's present place. Each document stands alone.
    /// @{
    void Write(const ISerializableContainer& root) override;
    void Write(const ISerializable& root) override;
    /// @}

private:
    CbStreamWriteBinary& stream;
};

} // namespace Vellum
