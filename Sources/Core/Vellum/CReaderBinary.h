#pragma once

#include <memory>

#include "../Platform/Export.h"

#include "Groundwork/CbStreamReadBinary.h"

#include "Vellum/IReader.h"
#include "Vellum/SOutcome.h"

namespace Vellum
{

class CBinaryTree;

/// CReaderBinary: reads a binary document; [Docs/BinaryFormat.md](Docs/BinaryFormat.md) has the format.
///
/// - **Parsing** The constructor reads the whole document and leaves the stream just behind it. From then on everything
///   is a lookup in memory, and the stream may be used otherwise or be gone.
/// - **Kinds** are strict: a value is found by the Read of the kind that it was written as, and by no other. Type names
///   are not compared.
/// - **Keys** GetKey gives them in the order of the document, which is not the order in which they were written. A key
///   in two kinds stands there twice. For a key that a document has twice in one kind the later value counts.
/// - **Memory** Keys and blobs that are handed out live as long as the CReaderBinary. No length in a document is
///   trusted: memory grows with the bytes that the stream delivers.
/// - **Errors** of the constructor:
///   - CbExceptionWrongFileVersion "CbStreamRead::ReadAndCompareVersion": the document, or a date in it, has a version
///     above 0
///   - CException "Vellum::CReaderBinary::CReaderBinary": the root is neither an object nor a sequence
///   - CException "Vellum::CDataReader::Read": an object has a kind that doesn't exist, a key or type name that isn't
///   in
///     the string table, or lies more than 1024 levels deep
///   - CException "Vellum::CDataReader::readBlobs": the stream delivered less than a whole blob
///   - CException "Vellum::CContainerReader::Read": the same four of a sequence, or numbers of 4 GiB and more
///   - CbExceptionContainer, std::bad_alloc: memory can't be had, for entries and for anything else
///   - what the stream raises, such as CbExceptionStream when it has run out of bytes
/// - **Threads** A stream belongs to one thread. A reader that has been made is never changed, so that several threads
///   may read from it at once.
class VELLUM_API CReaderBinary : public IReader
{
public:
    /// Reads one document from the stream's present place. The stream is the client's.
    explicit CReaderBinary(CbStreamReadBinary& stream);
    ~CReaderBinary() override;
    CReaderBinary(const CReaderBinary&) = delete;
    CReaderBinary& operator=(const CReaderBinary&) = delete;

    /// @name Read
    /// Calls the root's Read. May be repeated, with equal results. CException "Vellum::CReaderBinary::Read" if the
    /// document holds a root of the other kind; the reader stays good for the right one.
    /// @{
    void Read(ISerializableContainer& root) const override;
    void Read(ISerializable& root) const override;
    /// @}

    /// Goes through a document as the constructor does, from the stream's present place, and tells whether it is taken,
    /// or else what is wrong and where. Behind a document that is taken the stream stands as the constructor leaves it.
    /// The memory it takes is that of the keys and type names. What the stream raises passes through.
    static SOutcome Check(CbStreamReadBinary& stream);

private:
    std::unique_ptr<const CBinaryTree> tree;
};

} // namespace Vellum
