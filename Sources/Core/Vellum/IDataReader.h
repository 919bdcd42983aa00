#pragma once

#include <cstdint>
#include <string>

#include "../Platform/Export.h"

#include "Groundwork/NaturalArguments.h"

#include "Vellum/BlobRange.h"

class IDateTime;

namespace Vellum
{

class ISerializable;
class ISerializableContainer;

/// IDataReader: hands out the fields of one object, in any order and as often as they are asked for. A client meets it
/// in its Read and keeps no reference to it.
///
/// - **Absence** A Read that finds nothing returns false, leaves its argument as it was and raises nothing: a client
///   that sets defaults first keeps them for the fields that a document lacks. The one exception is CReaderJson's: a
///   text that is no bool clears the bool and gives false.
/// - **Kinds** Binary is strict: a value written as one kind is found by the Read of that kind alone. JSON and XML hold
///   texts and convert them to what is asked for; a conversion that fails raises CException or, for a date,
///   CbExceptionConversion.
/// - **Texts** Wide text is UTF-16 code units, one for each element whatever the width of wchar_t. Keys are never null.
/// - **Threads** As long as its client's Read runs, a reader belongs to the thread that Read was called on.
class VELLUM_API IDataReader
{
public:
    virtual ~IDataReader();

    /// Number of keys that GetKey enumerates. A key that occurs in several kinds may be counted for each.
    virtual std::uint32_t GetKeyCount() const = 0;

    /// The key at an index below GetKeyCount, which isn't tested. The reader owns the text. The order is not the order
    /// in which the fields were written.
    virtual const char* GetKey(std::uint32_t index) const = 0;

    /// The blob of a key, or two null pointers if there is none or an empty one. Of an empty one, CReaderJson raises
    /// CException, "Vellum::Base64::Decode", instead. The bytes live as long as the reader; the text formats decode
    /// them on the first request.
    virtual BlobRange GetBlob(const char* key) = 0;

    /// @name Read
    /// Read the field of a key into the argument and return true. A nested object's or sequence's own Read is called
    /// before the call returns: the client supplies the object that is filled. A date is handed over through
    /// IDateTime's setters.
    /// @{
    virtual bool Read(const char* key, ISerializableContainer& value) const = 0;
    virtual bool Read(const char* key, ISerializable& value) const = 0;
    virtual bool Read(const char* key, IDateTime& value) const = 0;
    virtual bool Read(const char* key, std::wstring& value) const = 0;
    virtual bool Read(const char* key, std::string& value) const = 0;
    virtual bool Read(const char* key, char& value) const = 0; ///< One character
    virtual bool Read(const char* key, double& value) const = 0;
    virtual bool Read(const char* key, float& value) const = 0;
    virtual bool Read(const char* key, std::int64_t& value) const = 0;
    virtual bool Read(const char* key, std::uint64_t& value) const = 0;
    virtual bool Read(const char* key, std::int32_t& value) const = 0;
    virtual bool Read(const char* key, std::uint32_t& value) const = 0;
    virtual bool Read(const char* key, std::int16_t& value) const = 0;
    virtual bool Read(const char* key, std::uint16_t& value) const = 0;
    virtual bool Read(const char* key, signed char& value) const = 0;   ///< A number, not a character
    virtual bool Read(const char* key, unsigned char& value) const = 0; ///< A number, not a character
    virtual bool Read(const char* key, bool& value) const = 0;
    /// @}

    /// An integer type of no kind of its own is read as the kind of its width and sign.
    template <OtherInteger Integer>
    bool Read(const char* key, Integer& value) const
    {
        ExactInteger<Integer> exact{};
        if (!Read(key, exact))
            return false;
        value = static_cast<Integer>(exact);
        return true;
    }

protected:
    IDataReader() = default;
    IDataReader(const IDataReader&) = default;
    IDataReader& operator=(const IDataReader&) = default;
};

} // namespace Vellum
