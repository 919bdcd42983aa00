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

/// IContainerReader: hands out the elements of one sequence by index. There is no count: a client reads index 0, 1, 2
/// and so on until Read returns false. Absence, kinds and texts are those of IDataReader, with an index past the end in
/// place of an absent key.
///
/// - **Gaps** In a document that the library wrote, the first false is the end. In JSON of others a null has an index
///   of its own and gives false too, as does an element of another kind in any text: [1,null,2,3] ends such a loop
///   behind the 1. Whoever has to read on asks for later indices as well.
class VELLUM_API IContainerReader
{
public:
    virtual ~IContainerReader();

    /// The blob at an index, or two null pointers if there is none or an empty one. Of an empty one, CReaderJson raises
    /// CException, "Vellum::Base64::Decode", instead. The bytes live as long as the reader.
    virtual BlobRange GetBlob(std::uint32_t index) = 0;

    /// @name Read
    /// Read the element at an index into the argument and return true. A nested object's or sequence's own Read is
    /// called before the call returns. A date is handed over through IDateTime's setters.
    /// @{
    virtual bool Read(std::uint32_t index, ISerializableContainer& value) const = 0;
    virtual bool Read(std::uint32_t index, ISerializable& value) const = 0;
    virtual bool Read(std::uint32_t index, IDateTime& value) const = 0;
    virtual bool Read(std::uint32_t index, std::wstring& value) const = 0;
    virtual bool Read(std::uint32_t index, std::string& value) const = 0;
    virtual bool Read(std::uint32_t index, char& value) const = 0; ///< One character
    virtual bool Read(std::uint32_t index, double& value) const = 0;
    virtual bool Read(std::uint32_t index, float& value) const = 0;
    virtual bool Read(std::uint32_t index, std::int64_t& value) const = 0;
    virtual bool Read(std::uint32_t index, std::uint64_t& value) const = 0;
    virtual bool Read(std::uint32_t index, std::int32_t& value) const = 0;
    virtual bool Read(std::uint32_t index, std::uint32_t& value) const = 0;
    virtual bool Read(std::uint32_t index, std::int16_t& value) const = 0;
    virtual bool Read(std::uint32_t index, std::uint16_t& value) const = 0;
    virtual bool Read(std::uint32_t index, signed char& value) const = 0;   ///< A number, not a character
    virtual bool Read(std::uint32_t index, unsigned char& value) const = 0; ///< A number, not a character
    virtual bool Read(std::uint32_t index, bool& value) const = 0;
    /// @}

    /// An integer type of no kind of its own is read as the kind of its width and sign.
    template <OtherInteger Integer>
    bool Read(std::uint32_t index, Integer& value) const
    {
        ExactInteger<Integer> exact{};
        if (!Read(index, exact))
            return false;
        value = static_cast<Integer>(exact);
        return true;
    }

protected:
    IContainerReader() = default;
    IContainerReader(const IContainerReader&) = default;
    IContainerReader& operator=(const IContainerReader&) = default;
};

} // namespace Vellum
