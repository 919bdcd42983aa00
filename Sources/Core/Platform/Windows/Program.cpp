#include "Platform/Program.h"

#include <fcntl.h>
#include <io.h>
#include <memory>
#include <stdio.h>
#include <windows.h> // with the shell, which parses command lines

#include "Platform/Utf8.h"

namespace Vellum::Platform
{

namespace
{

struct SFree
{
    void operator()(wchar_t** words) const noexcept { ::LocalFree(words); }
};

// Does nothing to what is no console.
void ObeySequences(HANDLE console) noexcept
{
    DWORD mode = 0;
    if (::GetConsoleMode(console, &mode))
        ::SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

} // namespace

// Those of `main` are in the system's code page, which lacks most characters.
std::vector<std::string> GetArguments(int, char**)
{
    int count = 0;
    const std::unique_ptr<wchar_t*[], SFree> words(::CommandLineToArgvW(::GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int index = 1; words != nullptr && index < count; ++index)
        arguments.push_back(Utf16ToUtf8(words[static_cast<std::size_t>(index)]));
    return arguments;
}

void PassBytes() noexcept
{
    for (FILE* const stream : {stdin, stdout, stderr})
        ::_setmode(::_fileno(stream), _O_BINARY);
    ::SetConsoleOutputCP(CP_UTF8);
    ObeySequences(::GetStdHandle(STD_OUTPUT_HANDLE));
    ObeySequences(::GetStdHandle(STD_ERROR_HANDLE));
}

} // namespace Vellum::Platform
