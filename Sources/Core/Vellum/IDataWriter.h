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

/// IDataWriter: takes the fields of one object. A client meets it in its Write and keeps no reference to it.
///
/// - **Keys** Zero-terminated texts, never null, copied where needed: the pointer need only be good for the call.
///   Binary and JSON compare them byte for byte, XML without regard to case. JSON writes them unescaped.
/// - **Repeats** A key written twice: binary keeps the later value of each kind, JSON and XML emit every write.
/// - **Texts** End at their first NUL. Narrow text is bytes in whatever encoding the client likes. Wide text is UTF-16
///   code units, one for each element whatever the width of wchar_t; where wchar_t is wider than that, an element above
///   0xFFFF is taken as that code point and leaves as its surrogate pair.
/// - **Blobs** The data is null for a blob of 0 bytes alone, if it likes.
/// - **Errors** Told by each format. Where the Write of a nested object or sequence raises and the client goes on all
///   the same, a binary document has the field with what was written of it until then.
class VELLUM_API IDataWriter
{
public:
    virtual ~IDataWriter();

    /// @name Write
    /// Write one field. A blob is its size in bytes and their address, copied or encoded before the call returns. The
    /// Write of a nested object or sequence is called before the call returns, with a writer of its own.
    /// @{
    virtual void Write(const char* key, std::size_t size, const void* data) = 0;
    virtual void Write(const char* key, const ISerializableContainer& value) = 0;
    virtual void Write(const char* key, const ISerializable& value) = 0;
    virtual void Write(const char* key, const IDateTime& value) = 0;
    virtual void Write(const char* key, const std::wstring& value) = 0;
    virtual void Write(const char* key, const std::string& value) = 0;
    virtual void Write(const char* key, char value) = 0; ///< One character
    virtual void Write(const char* key, double value) = 0;
    virtual void Write(const char* key, float value) = 0;
    virtual void Write(const char* key, std::int64_t value) = 0;
    virtual void Write(const char* key, std::uint64_t value) = 0;
    virtual void Write(const char* key, std::int32_t value) = 0;
    virtual void Write(const char* key, std::uint32_t value) = 0;
    virtual void Write(const char* key, std::int16_t value) = 0;
    virtual void Write(const char* key, std::uint16_t value) = 0;
    virtual void Write(const char* key, signed char value) = 0;   ///< A number, not a character
    virtual void Write(const char* key, unsigned char value) = 0; ///< A number, not a character
    virtual void Write(const char* key, bool value) = 0;
    /// @}

    /// @name Write of a pointer
    /// Text given as a pointer is written as text; null is not accepted.
    /// @{
    void Write(const char* key, const char* text) { Write(key, std::string(text)); }
    void Write(const char* key, const wchar_t* text) { Write(key, std::wstring(text)); }
    /// @}

    /// An integer type of no kind of its own is written as the kind of its width and sign.
    template <OtherInteger Integer>
    void Write(const char* key, Integer value)
    {
        Write(key, static_cast<ExactInteger<Integer>>(value));
    }

    /// @name Write that is refused
    /// What would silently become a bool or a number: other pointers, lambdas, characters other than char,
    /// enumerations.
    /// @{
    template <Misfit T>
    void Write(const char* key, T value) = delete;
    void Write(const char* key, std::nullptr_t) = delete;
    /// @}

protected:
    IDataWriter() = default;
    IDataWriter(const IDataWriter&) = default;
    IDataWriter& operator=(const IDataWriter&) = default;
};

} // namespace Vellum
