#include "Platform/StandardError.h"

#include <algorithm>
#include <array>
#include <windows.h>

#include "Platform/Windows/FileHandle.h"

namespace Vellum::Platform
{

namespace
{

// A console shows wide text, whatever code page it is in. What is too long for one piece is cut in front of a
// character.
void WriteToConsole(HANDLE console, std::string_view text) noexcept
{
    std::array<wchar_t, 8192> units; // never more of them than bytes
    while (!text.empty())
    {
        std::size_t size = std::min(text.size(), units.size());
        const auto continues = [&] { return size < text.size() && (text[size] & 0xC0) == 0x80; };
        for (int bytes = 0; bytes < 3 && continues(); ++bytes)
            --size;
        const int count = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(size), units.data(),
                                                static_cast<int>(units.size()));
        DWORD written = 0;
        ::WriteConsoleW(console, units.data(), static_cast<DWORD>(count), &written, nullptr);
        text.remove_prefix(size);
    }
}

} // namespace

void WriteToStandardError(std::string_view text) noexcept
{
    const HANDLE file = ::GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    if (file == nullptr || file == INVALID_HANDLE_VALUE) // a program with windows has none
        return;
    if (::GetConsoleMode(file, &mode))
        WriteToConsole(file, text);
    else
        WriteToHandle(file, text.data(), text.size());
}

} // namespace Vellum::Platform
