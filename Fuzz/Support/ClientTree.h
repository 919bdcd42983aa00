#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Groundwork/IDateTime.h"

#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Support/CByteSource.h"

// An arbitrary tree of client objects, made from the bytes of a fuzz input:
//
//   CByteSource source(data, size);
//   const auto written = MakeObject(source, shape);
//   ... write *written as a document ...
//   const auto read = MakeBlank(*written);   // the same fields and elements, with no values yet
//   ... read the document into *read ...
//   FUZZ_CHECK_NONE(FirstDifference(*written, *read));
namespace Fuzzing
{

// A date of the client's own, without any conversion.
class CPlainDate final : public IDateTime
{
public:
    CPlainDate() = default;
    CPlainDate(const CPlainDate&) = default;
    CPlainDate& operator=(const CPlainDate&) = default;
    using IDateTime::operator=;

    unsigned short GetYear() const override { return fields[0]; }
    unsigned short GetMonth() const override { return fields[1]; }
    unsigned short GetDay() const override { return fields[2]; }
    unsigned short GetHour() const override { return fields[3]; }
    unsigned short GetMinute() const override { return fields[4]; }
    unsigned short GetSecond() const override { return fields[5]; }
    unsigned short GetMilliseconds() const override { return fields[6]; }

    void SetYear(unsigned short value) override { fields[0] = value; }
    void SetMonth(unsigned short value) override { fields[1] = value; }
    void SetDay(unsigned short value) override { fields[2] = value; }
    void SetHour(unsigned short value) override { fields[3] = value; }
    void SetMinute(unsigned short value) override { fields[4] = value; }
    void SetSecond(unsigned short value) override { fields[5] = value; }
    void SetMilliseconds(unsigned short value) override { fields[6] = value; }

    bool operator==(const CPlainDate& other) const;

private:
    unsigned short fields[7] = {1601, 1, 1, 0, 0, 0, 0};
};

// What a format can carry. The default is all that a binary document brings back bit for bit.
struct STreeShape
{
    std::string_view keyLetters = {};  // bytes that keys and type names are made of; empty: every byte but NUL
    std::string_view textLetters = {}; // the same for narrow texts; empty: every byte but NUL
    std::string_view charLetters = {}; // the same for chars; empty: every byte
    bool keyInManyKinds = true;        // one key may have a value in each kind, never two in one kind
    bool mixedSequences = false;       // elements of one sequence may differ in kind
    bool loneSurrogates = true;        // wide texts may hold them
    bool outerSpace = true;            // texts may begin and end with white space
    bool nonFiniteNumbers = true;      // infinities and not-a-number
    bool milliseconds = true;          // dates have them
    bool emptyBlobs = true;            // blobs may have no bytes
    unsigned short maxYear = 9999;     // of dates; they start at 1601
};

class CTreeObject;
class CTreeSequence;

using Bytes = std::vector<unsigned char>;
using Value = std::variant<bool, unsigned char, signed char, std::uint16_t, std::int16_t, std::uint32_t, std::int32_t,
                           std::uint64_t, std::int64_t, float, double, char, std::string, std::wstring, CPlainDate,
                           Bytes, std::unique_ptr<CTreeObject>, std::unique_ptr<CTreeSequence>>;

class CTreeObject final : public Vellum::ISerializable
{
public:
    struct SField
    {
        std::string key;
        Value value;
        bool isRead; // by the last Read
    };

    CTreeObject();
    ~CTreeObject() override;

    const char* GetTypeName() const override { return typeName.c_str(); }
    void Write(Vellum::IDataWriter& writer) const override;
    void Read(Vellum::IDataReader& reader) override;

    std::string typeName;
    std::vector<SField> fields;
};

class CTreeSequence final : public Vellum::ISerializableContainer
{
public:
    struct SElement
    {
        Value value;
        bool isRead;
    };

    CTreeSequence();
    ~CTreeSequence() override;

    const char* GetTypeName() const override { return typeName.c_str(); }
    void Write(Vellum::IContainerWriter& writer) const override;
    void Read(Vellum::IContainerReader& reader) override;

    std::string typeName;
    std::vector<SElement> elements;
    bool hasMore = false; // the last Read found an element behind the ones that it expected
};

// A tree whose size is bounded by the bytes that are left, and whose depth is at most 100 levels.
std::unique_ptr<CTreeObject> MakeObject(CByteSource& source, const STreeShape& shape);
std::unique_ptr<CTreeSequence> MakeSequence(CByteSource& source, const STreeShape& shape);

// The same keys, kinds, type names and numbers of elements, with values that are still to be read.
std::unique_ptr<CTreeObject> MakeBlank(const CTreeObject& object);
std::unique_ptr<CTreeSequence> MakeBlank(const CTreeSequence& sequence);

// Empty if all that was written was read and is equal, numbers by their bits. Otherwise where the first difference is.
std::string FirstDifference(const CTreeObject& written, const CTreeObject& read);
std::string FirstDifference(const CTreeSequence& written, const CTreeSequence& read);

} // namespace Fuzzing
