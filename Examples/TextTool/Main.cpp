// Tells the code page of text files of unknown encoding and converts them to UTF-8. Help.txt, which is linked into the
// program as a resource, tells how it is called.

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>
#include <Vellum/Vellum.h>

#include "RunMain.h"

namespace
{

namespace fs = std::filesystem;

constexpr wchar_t ByteOrderMark = 0xFEFF;

struct SOptions
{
    unsigned int codePage = 0; // 0: guess
    fs::path target;           // empty: convert nothing
    std::vector<fs::path> files;
};

SOptions ParseOptions(int argc, char** argv)
{
    SOptions options;
    for (int at = 1; at < argc; ++at)
    {
        const std::string_view argument = argv[at];
        if (argument == "--from" && at + 1 < argc)
            Vellum::Conversion::FromString(argv[++at], options.codePage);
        else if (argument == "--to" && at + 1 < argc)
            options.target = argv[++at];
        else
            options.files.emplace_back(argument);
    }
    return options;
}

void Save(std::wstring_view text, const fs::path& path)
{
    if (text.starts_with(ByteOrderMark))
        text.remove_prefix(1);
    Vellum::CTextFile().SetText(std::wstring(text)).Write(path.wstring());
}

// False if the code page of the file can't be told or isn't known: a text that has bytes has no units then.
bool Convert(const fs::path& file, const SOptions& options)
{
    // Called first of all when the code page is asked for; 0 lets the library guess.
    Vellum::CTextFile source([&options](const std::vector<unsigned char>&) { return options.codePage; });
    source.Read(file.wstring());
    const unsigned int codePage = source.GuessCodePage();
    const std::wstring text = source.GetText(codePage);
    const bool isDecoded = codePage != 0 && (!text.empty() || source.GetTextRaw().empty());
    if (!isDecoded)
        std::printf("unknown %29s%s\n", "", file.string().c_str());
    else
        std::printf("code page %5u, %6zu units of text  %s\n", codePage, text.size(), file.string().c_str());
    if (isDecoded && !options.target.empty())
        Save(text, options.target / file.filename());
    return isDecoded;
}

int Run(const SOptions& options)
{
    if (options.files.empty())
    {
        std::cout << Vellum::CTextFile().Read(nullptr, 1, L"TEXT").GetTextRaw();
        return 2;
    }
    bool isEachTold = true;
    for (const fs::path& file : options.files)
        isEachTold = Convert(file, options) && isEachTold;
    return isEachTold ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    return RunMain("TextTool", [&] { return Run(ParseOptions(argc, argv)); });
}
