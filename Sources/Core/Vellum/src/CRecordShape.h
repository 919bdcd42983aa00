#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "Groundwork/BinaryEncoding.h"

#include "Vellum/src/CByteBuffer.h"
#include "Vellum/src/FieldOrder.h"

namespace Vellum
{

// CRecordShape: what the records of a type have in common when one comes after the other with the same fields in the
// same order, as nearly all do. Of such a record all bytes are known but the values, and for those of a fixed size the
// place is known too. So a record that follows a shape is an image that is filled in: each write is compared with the
// step that is expected, by kind and by the text of the key, and its value goes where the step says. What has no fixed
// size waits elsewhere and is put between the parts of the image when the record goes out.
//
//   image   the record as it is stored, without the values that have no fixed size
//   step    a field, in the order of the writes
//   gap     where a value without a fixed size belongs, in the order of the image
//
// Memory   In proportion to the fields; what Learn has obtained serves again.
// Errors   Learn: std::bad_alloc. The shape is empty then, and nothing follows it.
// Threads  Those of the document.
class CRecordShape
{
public:
    // What has more fields isn't worth remembering.
    static constexpr std::size_t MaxFields = 0x400;

    struct SStep
    {
        const char* text;  // the key, in the string table
        std::uint32_t key; // its index there
        std::uint32_t at;  // in the image; without a fixed size: how many values of that storage come before
        std::uint8_t rank;
        mutable const char* constant; // where the key came from last if it can't change there; otherwise null
    };

    struct SGap
    {
        std::uint32_t at;    // how much of the image is in front of it
        std::uint32_t value; // the step's `at`
        std::uint8_t rank;
    };

    // The type whose records the shape describes.
    std::uint32_t GetTypeName() const { return typeName; }
    const std::vector<SStep>& GetSteps() const { return steps; }
    const std::vector<SGap>& GetGaps() const { return gaps; }
    const CByteBuffer& GetImage() const { return image; }

    // How many records follow the shape at the moment. It must not be changed under them.
    std::uint32_t followers = 0;

    // Takes the shape of a record whose fields stand as they were written, and the order in which they are stored.
    void Learn(std::uint32_t type, const std::vector<SRecordField>& fields, const FieldOrder::Positions& order)
    {
        clear();
        try
        {
            typeName = type;
            addSteps(fields);
            layOut(order);
        }
        catch (...)
        {
            clear();
            throw;
        }
    }

private:
    void clear()
    {
        typeName = 0;
        steps.clear();
        gaps.clear();
        image.Clear();
    }

    void addSteps(const std::vector<SRecordField>& fields)
    {
        std::array<std::uint32_t, Ranks> counts{};
        for (const SRecordField& field : fields)
            steps.push_back({field.text, field.key, SizesByRank[field.rank] != 0 ? 0 : counts[StorageOf(field.rank)]++,
                             field.rank, nullptr});
    }

    // Sections have a head for the first field of a kind, and the number of fields in it.
    void layOut(const FieldOrder::Positions& order)
    {
        const SSectionCounts counts = CountSections(steps);
        BinaryEncoding::WriteNumber(image, counts.sections);
        std::size_t before = Ranks;
        for (const std::uint32_t position : order)
        {
            SStep& step = steps[position];
            if (step.rank != std::exchange(before, std::size_t{step.rank}))
            {
                BinaryEncoding::WriteNumber(image, TagsByRank[step.rank]);
                BinaryEncoding::WriteNumber(image, counts.fields[step.rank]);
            }
            BinaryEncoding::WriteNumber(image, step.key);
            leaveRoom(step);
        }
    }

    void leaveRoom(SStep& step)
    {
        static constexpr std::array<unsigned char, 16> nothing{};
        const auto at = static_cast<std::uint32_t>(image.GetSize());
        if (const std::uint8_t size = SizesByRank[step.rank]; size != 0)
        {
            step.at = at;
            image.Write(nothing.data(), size);
        }
        else
            gaps.push_back({at, step.at, step.rank});
    }

    std::uint32_t typeName = 0;
    std::vector<SStep> steps;
    std::vector<SGap> gaps;
    CByteBuffer image;
};

} // namespace Vellum
