#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string_view>

#include "Vellum/src/CPutArea.h"

namespace Vellum
{

// A piece of a document that consists of TABs.
struct STabs
{
    std::uint32_t count;
};

// CTextOutput: a text document on its way to the client's stream. It gathers the pieces of one field or element, so
// that the stream takes them at once, and prints numbers without the stream's inserters as long as the stream's flags
// make no difference.
//
// Order    What was put reaches the stream with Flush, or earlier. The owner flushes before the client is called and
//          before a call of the client returns, so the client sees its document grow as if nothing were gathered.
// Place    Pieces are gathered in the memory of the stream's own buffer, behind what it has, where they stay: a flush
//          tells the buffer how many there are. Where it has no room for them, or where writing would do more than
//          copy (another buffer, a tie, a state that isn't good), they are gathered here and written with a flush.
// Numbers  come out as the stream's inserters print them with its flags and field width, in the classic locale,
//          whichever locale is imbued.
// Errors   are those of the stream: its state, or an exception if the client has asked its stream for that.
class CTextOutput
{
public:
    explicit CTextOutput(std::ostringstream& target) : stream(target), state(target) {}
    CTextOutput(const CTextOutput&) = delete;
    CTextOutput& operator=(const CTextOutput&) = delete;

    // Pieces one behind the other: characters, texts, STabs.
    template <class... Pieces>
    void Put(const Pieces&... pieces)
    {
        char* to = Reserve((roomFor(pieces) + ...));
        if (to == nullptr)
            return (putAlone(pieces), ...);
        ((to = append(to, pieces)), ...);
        Commit(to);
    }

    // Where a piece of at most that size can be gathered behind the others, or null. It counts with Commit, which is
    // given its end.
    char* Reserve(std::size_t size) { return size < getRoom() || open(size) ? next : nullptr; }
    void Commit(char* piecesEnd) { next = piecesEnd; }

    // An integer of 16 to 64 bits: as characters, those of 8 bits would not come out as numbers.
    template <std::integral Integer>
    requires(sizeof(Integer) > 1) void PutInteger(Integer value)
    {
        if (!printsPlainIntegers())
            return insert(value);
        makeRoom(MostNumber);
        next = std::to_chars(next, next + MostNumber, value).ptr;
    }

    // Sets the stream's precision and leaves it so. The stream's showpoint applies like any other flag.
    void PutReal(double value, int precision);

    // Sets the stream's boolalpha and leaves it so.
    void PutBool(bool value);

    // The stream's showpoint, which stays as it is set.
    void SetShowPoint(bool value)
    {
        state.setf(value ? std::ios_base::showpoint : std::ios_base::fmtflags{}, std::ios_base::showpoint);
    }

    void Flush()
    {
        const char* const pieces = begin;
        const auto size = static_cast<std::size_t>(next - begin);
        begin = next = end = nullptr; // before the stream gets a chance to raise something
        if (size == 0)
            return;
        if (pieces == pending.data())
            stream.write(pieces, static_cast<std::streamsize>(size));
        else
            CPutArea::Advance(*stream.rdbuf(), size);
    }

private:
    static constexpr std::size_t MostNumber = 32;
    static constexpr std::string_view Tabs = "\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t";

    static std::size_t roomFor(char) { return 1; }
    static std::size_t roomFor(std::string_view text) { return text.size(); }
    static std::size_t roomFor(STabs tabs) { return tabs.count <= Tabs.size() ? Tabs.size() : tabs.count; }

    static char* append(char* to, char character)
    {
        *to = character;
        return to + 1;
    }
    template <std::size_t Size>
    static char* append(char* to, const char (&literal)[Size])
    {
        std::memcpy(to, literal, Size - 1);
        return to + Size - 1;
    }
    static char* append(char* to, std::string_view text)
    {
        appendShort(to, text.data(), text.size());
        return to + text.size();
    }
    static char* append(char* to, STabs tabs)
    {
        std::memcpy(to, Tabs.data(), Tabs.size());
        if (tabs.count > Tabs.size())
            std::memset(to + Tabs.size(), '\t', tabs.count - Tabs.size());
        return to + tabs.count;
    }

    // Most pieces are a few bytes long: in front and at the end they are copied with a size that the compiler knows.
    static void appendShort(char* to, const char* from, std::size_t size)
    {
        if (size > 16)
            std::memcpy(to, from, size);
        else if (size >= 8)
            appendEnds<8>(to, from, size);
        else if (size >= 4)
            appendEnds<4>(to, from, size);
        else if (size != 0)
        {
            to[size / 2] = from[size / 2];
            appendEnds<1>(to, from, size);
        }
    }
    template <std::size_t Each>
    static void appendEnds(char* to, const char* from, std::size_t size)
    {
        std::memcpy(to, from, Each);
        std::memcpy(to + size - Each, from + size - Each, Each);
    }

    void putAlone(char character);
    void putAlone(std::string_view text);
    void putAlone(STabs tabs);

    std::size_t getRoom() const { return static_cast<std::size_t>(end - next); }

    // Chooses a place for the first pieces. Whether there is room for that many bytes.
    bool open(std::size_t size)
    {
        if (begin == nullptr)
        {
            const std::size_t ownRoom = writesByCopying() ? CPutArea::GetSize(*stream.rdbuf()) : 0;
            begin = next = ownRoom > size ? CPutArea::GetBegin(*stream.rdbuf()) : pending.data();
            end = begin + (ownRoom > size ? ownRoom : pending.size());
        }
        return size <= getRoom();
    }
    void makeRoom(std::size_t size)
    {
        if (Reserve(size) != nullptr)
            return;
        Flush();
        open(size);
    }

    bool printsPlainIntegers() const
    {
        const auto flags = state.flags() & (std::ios_base::basefield | std::ios_base::showpos);
        return (flags == std::ios_base::dec || flags == std::ios_base::fmtflags{}) && state.width() == 0;
    }

    // Whether writing to the stream is nothing but a copy into its own buffer, as long as that has room, and nothing is
    // lost with what the buffer has behind it.
    bool writesByCopying() const
    {
        return state.rdbuf() == stream.rdbuf() && state.good() && state.tie() == nullptr &&
               (state.flags() & std::ios_base::unitbuf) == 0 && CPutArea::IsAtEnd(*stream.rdbuf());
    }

    // Through the stream's own inserter.
    template <class T>
    void insert(T value);

    std::ostringstream& stream;
    std::ios& state;       // of the stream
    char* begin = nullptr; // of the gathered pieces: in `pending`, in the stream's buffer, or null if there are none
    char* next = nullptr;
    char* end = nullptr;
    std::array<char, 1024> pending;
};

} // namespace Vellum
