#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "../Platform/Export.h"

#include "Groundwork/NaturalArguments.h"

class IDateTime;

namespace Vellum
{

class ISerializable;
class ISerializableContainer;

/// IContainerWriter: takes the elements of one sequence, first to last. A client meets it in its Write and keeps no
/// reference to it. Texts and blobs are those of IDataWriter.
///
/// - **Errors** Where the Write of a nested object or sequence raises and the client goes on all the same, a binary
///   document has nothing of the element.
/// - **Kinds** In a binary document all elements of a sequence are of one kind: another kind raises CException,
///   "Vellum::CContainerWriterBinary::write" for bool to date and "Vellum::CContainerWriterBinary::Write" for blob,
///   object and sequence, and leaves the sequence as it was. JSON and XML accept any mixture.
class VELLUM_API IContainerWriter
{
public:
    virtual ~IContainerWriter();

    /// @name Write
    /// Append one element. A blob is its size in bytes and their address, copied or encoded before the call returns.
    /// The Write of a nested object or sequence is called before the call returns, with a writer of its own.
    /// @{
    virtual void Write(std::size_t size, const void* data) = 0;
    virtual void Write(const ISerializableContainer& value) = 0;
    virtual void Write(const ISerializable& value) = 0;
    virtual void Write(const IDateTime& value) = 0;
    virtual void Write(const std::wstring& value) = 0;
    virtual void Write(const std::string& value) = 0;
    virtual void Write(char value) = 0; ///< One character
    virtual void Write(double value) = 0;
    virtual void Write(float value) = 0;
    virtual void Write(std::int64_t value) = 0;
    virtual void Write(std::uint64_t value) = 0;
    virtual void Write(std::int32_t value) = 0;
    virtual void Write(std::uint32_t value) = 0;
    virtual void Write(std::int16_t value) = 0;
    virtual void Write(std::uint16_t value) = 0;
    virtual void Write(signed char value) = 0;   ///< A number, not a character
    virtual void Write(unsigned char value) = 0; ///< A number, not a character
    virtual void Write(bool value) = 0;
    /// @}

    /// @name Write of a pointer
    /// Text given as a pointer is written as text; null is not accepted.
    /// @{
    void Write(const char* text) { Write(std::string(text)); }
    void Write(const wchar_t* text) { Write(std::wstring(text)); }
    /// @}

    /// An integer type of no kind of its own is written as the kind of its width and sign.
    template <OtherInteger Integer>
    void Write(Integer value)
    {
        Write(static_cast<ExactInteger<Integer>>(value));
    }

    /// @name Write that is refused
    /// What would silently become a bool or a number: other pointers, lambdas, characters other than char,
    /// enumerations.
    /// @{
    template <Misfit T>
    void Write(T value) = delete;
    void Write(std::nullptr_t) = delete;
    /// @}

protected:
    IContainerWriter() = default;
    IContainerWriter(const IContainerWriter&) = default;
    IContainerWriter& operator=(const IContainerWriter&) = default;
};

} // namespace Vellum
