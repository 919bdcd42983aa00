#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string_view>

namespace Vellum
{

// CTextOutput: a text document on its way to the client's stream. It gathers the pieces of one field or element, so
// that the stream takes them at once, and prints numbers without the stream's inserters as long as the stream's flags
// make no difference.
//
// Order    What was put reaches the stream with Flush, or earlier. The owner flushes before the client is called and
//          before a call of the client returns, so the client sees its document grow as if nothing were gathered.
// Numbers  come out as the stream's inserters print them with its flags and field width, in the classic locale,
//          whichever locale is imbued.
// Errors   are those of the stream: its state, or an exception if the client has asked its stream for that.
class CTextOutput
{
public:
    explicit CTextOutput(std::ostream& target) : stream(target) {}
    CTextOutput(const CTextOutput&) = delete;
    CTextOutput& operator=(const CTextOutput&) = delete;

    void Put(char character)
    {
        reserve(1);
        pending[used++] = character;
    }

    void Put(std::string_view text)
    {
        if (text.size() > pending.size() - used)
            return putLong(text);
        text.copy(pending.data() + used, text.size());
        used += text.size();
    }

    void PutTabs(std::uint32_t count);

    // An integer of 16 to 64 bits: as characters, those of 8 bits would not come out as numbers.
    template <std::integral Integer>
    requires(sizeof(Integer) > 1) void PutInteger(Integer value)
    {
        if (!printsPlainIntegers())
            return insert(value);
        reserve(MostNumber);
        used = static_cast<std::size_t>(std::to_chars(next(), next() + MostNumber, value).ptr - pending.data());
    }

    // Sets the stream's precision and leaves it so. The stream's showpoint applies like any other flag.
    void PutReal(double value, int precision);

    // Sets the stream's boolalpha and leaves it so.
    void PutBool(bool value);

    // The stream's showpoint, which stays as it is set.
    void SetShowPoint(bool value)
    {
        stream.setf(value ? std::ios_base::showpoint : std::ios_base::fmtflags{}, std::ios_base::showpoint);
    }

    void Flush();

private:
    static constexpr std::size_t MostNumber = 32;

    char* next() { return pending.data() + used; }
    void reserve(std::size_t size)
    {
        if (size > pending.size() - used)
            Flush();
    }
    bool printsPlainIntegers() const;
    void putLong(std::string_view text);

    // Through the stream's own inserter.
    template <class T>
    void insert(T value);

    std::ostream& stream;
    std::size_t used = 0; // of pending
    std::array<char, 1024> pending;
};

} // namespace Vellum
