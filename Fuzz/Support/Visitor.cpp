#include "Support/Visitor.h"

#include <cstdint>
#include <cstring>
#include <numeric>
#include <string>
#include <type_traits>

#include "Groundwork/IException.h"

#include "Vellum/IContainerReader.h"
#include "Vellum/IDataReader.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Support/Check.h"
#include "Support/ClientTree.h"

namespace Fuzzing
{
namespace
{

constexpr std::uint32_t MaxVisits = 2000;
constexpr std::uint32_t MaxGap = 3; // elements in a row that are found in no kind, until a sequence counts as ended

// What is shared by all parts of one visit.
struct SVisit
{
    std::uint32_t visitsLeft = MaxVisits;
    unsigned sum = 0; // of all bytes handed out: reading them is what a sanitizer watches
};

bool UsesOne(SVisit& visit)
{
    if (visit.visitsLeft == 0)
        return false;
    --visit.visitsLeft;
    return true;
}

// A conversion that fails raises an IException, which is as good as a value that isn't there.
template <class Operation>
bool Try(Operation operation)
{
    try
    {
        return operation();
    }
    catch (const IException&)
    {
        return false;
    }
}

template <class T, class Reader, class Key>
bool TryRead(Reader& reader, Key key)
{
    const T before{};
    T value{};
    return Try(
        [&]
        {
            const bool isFound = reader.Read(key, value);
            FUZZ_CHECK(isFound || value == before);
            return isFound;
        });
}

template <class Reader, class Key>
bool TryBlob(Reader& reader, Key key, SVisit& visit)
{
    return Try(
        [&]
        {
            const Vellum::BlobRange range = reader.GetBlob(key);
            FUZZ_CHECK((range.first == nullptr) == (range.second == nullptr));
            visit.sum = std::accumulate(range.first, range.second, visit.sum);
            return range.first != nullptr;
        });
}

class CVisitedSequence;

class CVisitedObject final : public Vellum::ISerializable
{
public:
    explicit CVisitedObject(SVisit& visit) : visit(visit) {}

    const char* GetTypeName() const override { return "Object"; }
    void Write(Vellum::IDataWriter&) const override {}
    void Read(Vellum::IDataReader& reader) override;

private:
    SVisit& visit;
};

class CVisitedSequence final : public Vellum::ISerializableContainer
{
public:
    explicit CVisitedSequence(SVisit& visit) : visit(visit) {}

    const char* GetTypeName() const override { return "Sequence"; }
    void Write(Vellum::IContainerWriter&) const override {}
    void Read(Vellum::IContainerReader& reader) override;

private:
    SVisit& visit;
};

template <class Reader, class Key>
bool TryNested(Reader& reader, Key key, SVisit& visit)
{
    CVisitedObject object(visit);
    CVisitedSequence sequence(visit);
    const bool isObject = Try([&] { return reader.Read(key, object); });
    const bool isSequence = Try([&] { return reader.Read(key, sequence); });
    return isObject || isSequence;
}

template <class Reader, class Key, class... T>
bool TryKinds(Reader& reader, Key key)
{
    return (static_cast<unsigned>(TryRead<T>(reader, key)) + ...) != 0; // every kind, also when one is found
}

// Whether anything is there.
template <class Reader, class Key>
bool VisitItem(Reader& reader, Key key, SVisit& visit)
{
    const bool isScalar =
        TryKinds<Reader, Key, bool, unsigned char, signed char, std::uint16_t, std::int16_t, std::uint32_t,
                 std::int32_t, std::uint64_t, std::int64_t, float, double, char, std::string, std::wstring, CPlainDate>(
            reader, key);
    const bool isBlob = TryBlob(reader, key, visit);
    return TryNested(reader, key, visit) || isBlob || isScalar;
}

void CVisitedObject::Read(Vellum::IDataReader& reader)
{
    for (std::uint32_t index = 0; index < reader.GetKeyCount() && UsesOne(visit); ++index)
    {
        const char* const key = reader.GetKey(index);
        visit.sum += static_cast<unsigned>(std::strlen(key));
        VisitItem(reader, key, visit);
    }
}

void CVisitedSequence::Read(Vellum::IContainerReader& reader)
{
    std::uint32_t gap = 0;
    for (std::uint32_t index = 0; gap < MaxGap && UsesOne(visit); ++index)
        gap = VisitItem(reader, index, visit) ? 0 : gap + 1;
}

template <class Root>
void VisitRoot(const Vellum::IReader& reader)
{
    SVisit visit;
    Root root(visit);
    Try(
        [&]
        {
            reader.Read(root);
            return true;
        });
    [[maybe_unused]] const volatile unsigned sink = visit.sum; // so that no read is optimized away
}

} // namespace

void VisitAll(const Vellum::IReader& reader)
{
    VisitRoot<CVisitedObject>(reader);
    VisitRoot<CVisitedSequence>(reader);
}

} // namespace Fuzzing
