#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "Vellum/src/CTextOutput.h"
#include "Vellum/src/EightBytes.h"

// Texts with some of their bytes replaced. What is replaced, and by what, is told by a structure Escapes:
//
//   MostGrowth             characters that stand for one byte at most
//   Mark(bytes)            marks those of eight bytes that are replaced, and may mark others
//   Has(byte)              whether the byte is replaced
//   Append(to, byte)       writes what stands for it, MostGrowth characters at most, and returns the end
//   Put(output, byte)      puts it
namespace Vellum
{

// Number of bytes in front that aren't replaced.
template <class Escapes>
std::size_t CountPlain(std::string_view text)
{
    std::size_t count = 0;
    while (text.size() - count >= 8)
    {
        const std::uint64_t marks = Escapes::Mark(LoadEight(text.data() + count));
        count += marks == 0 ? 8 : FirstMarked(marks);
        if (marks != 0 && Escapes::Has(text[count++]))
            return count - 1;
    }
    while (count < text.size() && !Escapes::Has(text[count]))
        ++count;
    return count;
}

template <class Escapes>
char* AppendByte(char* to, char byte)
{
    if (Escapes::Has(byte))
        return Escapes::Append(to, byte);
    *to = byte;
    return to + 1;
}

// Copies eight bytes before it is known how many of them stand as they are. The room is MostGrowth times the text.
template <class Escapes>
char* AppendEscaped(char* to, std::string_view text)
{
    const char* from = text.data();
    const char* const end = from + text.size();
    while (end - from >= 8)
    {
        const std::uint64_t bytes = LoadEight(from);
        const std::uint64_t marks = Escapes::Mark(bytes);
        const std::size_t plain = marks == 0 ? sizeof bytes : FirstMarked(marks);
        std::memcpy(to, &bytes, sizeof bytes);
        to += plain;
        from += plain;
        if (marks != 0)
            to = AppendByte<Escapes>(to, *from++);
    }
    while (from != end)
        to = AppendByte<Escapes>(to, *from++);
    return to;
}

// A text for which there may be no room is put run by run.
template <class Escapes>
void PutEscaped(CTextOutput& output, std::string_view text)
{
    if (char* const to = output.Reserve(text.size() * Escapes::MostGrowth))
        return output.Commit(AppendEscaped<Escapes>(to, text));
    while (true)
    {
        const std::size_t plain = CountPlain<Escapes>(text);
        output.Put(text.substr(0, plain));
        if (plain == text.size())
            break;
        Escapes::Put(output, text[plain]);
        text.remove_prefix(plain + 1);
    }
}

} // namespace Vellum
