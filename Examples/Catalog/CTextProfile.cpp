#include "CTextProfile.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

using ByteCounts = std::array<std::uint32_t, 256>;

ByteCounts CountBytes(std::string_view text)
{
    ByteCounts counts{};
    for (const char byte : text)
        ++counts[static_cast<unsigned char>(byte)];
    return counts;
}

double EntropyOf(const ByteCounts& counts, std::size_t size)
{
    double entropy = 0;
    for (const std::uint32_t count : counts)
        if (count != 0)
        {
            const double share = static_cast<double>(count) / static_cast<double>(size);
            entropy -= share * std::log2(share);
        }
    return entropy;
}

std::int16_t OpenBracketsOf(const ByteCounts& counts)
{
    const auto difference = [&](char open, char close)
    { return std::int64_t{counts[static_cast<unsigned char>(open)]} - counts[static_cast<unsigned char>(close)]; };
    const std::int64_t open = difference('(', ')') + difference('[', ']') + difference('{', '}');
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(std::clamp<std::int64_t>(open, Limits::min(), Limits::max()));
}

// Takes lines and tells how they end.
class CLineEnds
{
public:
    void Take(std::string_view line) { (line.ends_with('\r') ? hasCrLf : hasLf) = true; }
    signed char GetResult() const { return hasLf && hasCrLf ? -1 : hasCrLf ? 2 : hasLf ? 1 : 0; }

private:
    bool hasLf = false;
    bool hasCrLf = false;
};

} // namespace

void CLineLengths::Write(Vellum::IContainerWriter& writer) const
{
    for (const std::uint32_t count : counts)
        writer.Write(count);
}

void CLineLengths::Read(Vellum::IContainerReader& reader)
{
    for (std::uint32_t index = 0; index < counts.size(); ++index)
        reader.Read(index, counts[index]);
}

void CLineLengths::Count(std::size_t length) { ++counts[std::min(length / 10, counts.size() - 1)]; }

void CTextProfile::Write(Vellum::IDataWriter& writer) const
{
    writer.Write("lineCount", lineCount);
    writer.Write("blankShare", blankShare);
    writer.Write("entropy", entropy);
    writer.Write("commonestByte", commonestByte);
    writer.Write("lineEnds", lineEnds);
    writer.Write("openBrackets", openBrackets);
    writer.Write("lineLengths", lineLengths);
}

void CTextProfile::Read(Vellum::IDataReader& reader)
{
    reader.Read("lineCount", lineCount);
    reader.Read("blankShare", blankShare);
    reader.Read("entropy", entropy);
    reader.Read("commonestByte", commonestByte);
    reader.Read("lineEnds", lineEnds);
    reader.Read("openBrackets", openBrackets);
    reader.Read("lineLengths", lineLengths);
}

CTextProfile CTextProfile::Of(std::string_view text)
{
    CTextProfile profile;
    if (text.empty())
        return profile;

    const ByteCounts counts = CountBytes(text);
    const std::uint32_t blanks = counts[' '] + counts['\t'] + counts['\n'] + counts['\r'];
    profile.blankShare = static_cast<float>(blanks) / static_cast<float>(text.size());
    profile.entropy = EntropyOf(counts, text.size());
    profile.commonestByte = static_cast<std::uint8_t>(std::ranges::max_element(counts) - counts.begin());
    profile.openBrackets = OpenBracketsOf(counts);

    CLineEnds lineEnds;
    for (std::size_t end; (end = text.find('\n')) != text.npos; text.remove_prefix(end + 1))
    {
        ++profile.lineCount;
        profile.lineLengths.Count(end);
        lineEnds.Take(text.substr(0, end));
    }
    profile.lineEnds = lineEnds.GetResult();
    return profile;
}
