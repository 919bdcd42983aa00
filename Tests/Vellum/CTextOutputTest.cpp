#include "Vellum/src/CTextOutput.h"

#include <iomanip>
#include <locale>

#include "Support/Testing.h"

namespace
{

using Vellum::CTextOutput;

// What an output is made on, with bytes behind it that it must leave alone.
struct SGuarded
{
    explicit SGuarded(std::ostringstream& stream) : output(stream) { guard.fill('g'); }
    ~SGuarded() { EXPECT_EQ(std::count(guard.begin(), guard.end(), 'g'), 64); }

    CTextOutput output;
    std::array<char, 64> guard;
};

// A buffer of the client's own.
class CTextBuffer : public std::streambuf
{
public:
    std::string text;

private:
    int_type overflow(int_type byte) override // some libraries' inserters put single ones
    {
        text += traits_type::to_char_type(byte);
        return byte;
    }
    std::streamsize xsputn(const char* bytes, std::streamsize size) override
    {
        EXPECT_GT(size, 0);
        text.append(bytes, static_cast<std::size_t>(size));
        return size;
    }
};

// A state, flags and a field width, or none, made of the same bits for both streams.
void Prepare(std::ostream& stream, std::uint32_t bits)
{
    using Base = std::ios_base;
    static constexpr Base::fmtflags bases[] = {Base::dec, Base::hex, Base::oct, Base::fmtflags()};
    static constexpr Base::fmtflags forms[] = {Base::fmtflags(), Base::fixed, Base::scientific, Base::floatfield};
    static constexpr Base::fmtflags sides[] = {Base::right, Base::left, Base::internal, Base::fmtflags()};
    static constexpr Base::fmtflags others[] = {Base::showpos, Base::showbase, Base::uppercase, Base::showpoint};
    stream.clear((bits >> 20) % 8 == 0 ? Base::failbit : Base::goodbit);
    if (bits % 4 == 0)
    {
        stream.flags(bases[bits >> 2 & 3] | forms[bits >> 4 & 3] | sides[bits >> 6 & 3] |
                     (stream.flags() & Base::boolalpha));
        for (unsigned i = 0; i < 4; ++i)
            stream.setf((bits >> (8 + i) & 1) != 0 ? others[i] : Base::fmtflags());
    }
    if ((bits >> 12) % 8 == 0)
        stream << std::setw(static_cast<int>(bits >> 15 & 31)) << std::setfill('*');
}

// Pieces of every kind and size, put into an output and inserted into a stream in the classic locale.
TEST(CTextOutput, GivesItsStreamWhatTheStreamsOwnInsertersWould)
{
    struct SGerman : std::numpunct<char> // some libraries know no other locale than that of C
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale locales[] = {std::locale::classic(), std::locale(std::locale::classic(), new SGerman)};
    std::mt19937_64 random(20240307);
    for (int round = 0; round < 300; ++round)
    {
        const std::string overwritten(static_cast<std::size_t>(random() % 3000), 'o');
        std::ostringstream expected(overwritten);
        expected.imbue(std::locale::classic());
        std::ostringstream stream(overwritten);
        stream.imbue(locales[round % 2]);
        CTextBuffer own;
        if (round % 5 == 0)
            static_cast<std::ios&>(stream).rdbuf(&own);
        {
            SGuarded guarded(stream);
            CTextOutput& output = guarded.output;
            for (int piece = 0; piece < 40; ++piece)
            {
                const std::uint64_t bits = random();
                const auto setUp = static_cast<std::uint32_t>(bits >> 32);
                if (bits % 3 == 0)
                {
                    output.Flush();
                    Prepare(stream, setUp);
                    Prepare(expected, setUp);
                }
                const double real = std::ldexp(static_cast<double>(static_cast<std::int64_t>(bits)), piece * 5 - 120);
                switch (bits >> 8 & 7)
                {
                case 0:
                    output.Put('c');
                    expected.write("c", 1);
                    break;
                case 1:
                case 2: // often to just the end of the buffer
                {
                    const auto size = static_cast<std::size_t>(bits >> 24 & ((bits >> 16 & 3) == 0 ? 2047 : 15));
                    const std::string text(size, 't');
                    output.Put(std::string_view(text));
                    expected.write(text.data(), static_cast<std::streamsize>(text.size()));
                    break;
                }
                case 3:
                {
                    const auto count = static_cast<std::uint32_t>(bits >> 24 & 63);
                    output.Put("a", Vellum::STabs{count}, 'c');
                    expected.write(("a" + std::string(count, '\t') + 'c').data(), count + 2);
                    break;
                }
                case 4:
                    output.PutInteger(static_cast<std::int64_t>(bits));
                    expected << static_cast<std::int64_t>(bits);
                    break;
                case 5:
                    output.PutInteger(static_cast<std::uint16_t>(bits));
                    expected << static_cast<std::uint16_t>(bits);
                    break;
                case 6:
                    output.PutBool(bits % 2 != 0);
                    expected << std::boolalpha << (bits % 2 != 0);
                    break;
                default:
                    output.SetShowPoint(bits % 2 != 0);
                    output.PutReal(real, 17);
                    expected << (bits % 2 != 0 ? std::showpoint : std::noshowpoint) << std::setprecision(17) << real;
                }
                ASSERT_EQ(stream.flags(), expected.flags());
                ASSERT_EQ(stream.precision(), expected.precision());
            }
            output.Flush();
        }
        if (round % 5 == 0)
        {
            static_cast<std::ios&>(stream).rdbuf(stream.rdbuf());
            stream.write(own.text.data(), static_cast<std::streamsize>(own.text.size()));
        }
        ASSERT_EQ(stream.str(), expected.str()) << round;
        EXPECT_EQ(stream.getloc(), locales[round % 2]);
    }
}

// The longest numbers in front of each of the last places of the buffer.
TEST(CTextOutput, KeepsWithinItsBuffer)
{
    for (std::size_t size = 960; size <= 1024; ++size)
        for (const bool isReal : {false, true})
        {
            std::ostringstream stream;
            SGuarded guarded(stream);
            const std::string text(size, 't');
            guarded.output.Put(std::string_view(text));
            isReal ? guarded.output.PutReal(-std::numeric_limits<double>::denorm_min(), 17)
                   : guarded.output.PutInteger(std::numeric_limits<std::int64_t>::min());
            guarded.output.Put('c');
            guarded.output.Flush();
            EXPECT_EQ(stream.str(), text + (isReal ? "-4.9406564584124654e-324c" : "-9223372036854775808c"));
        }
}

} // namespace
