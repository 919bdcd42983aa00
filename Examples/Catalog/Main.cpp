// Walks a folder into client objects, stores them as a binary, a JSON and an XML document, reads the three files back
// into fresh objects, and compares those with the first ones field by field.
//
//   Catalog [--full] [--output FOLDER] [FOLDER]
//
//   FOLDER           what to walk; the library's own sources if it isn't given
//   --full           print the whole tree as JSON, in place of its first lines
//   --output FOLDER  where the three documents are left; the folder of the build if it isn't given

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <Vellum/Vellum.h>

#include "Compare.h"
#include "CStopwatch.h"
#include "RunMain.h"
#include "Scan.h"

namespace
{

namespace fs = std::filesystem;

struct SOptions
{
    fs::path folder = VELLUM_SOURCES;
    fs::path output = VELLUM_DOCUMENTS;
    bool isFull = false;
};

SOptions ParseOptions(int argc, char** argv)
{
    SOptions options;
    for (int at = 1; at < argc; ++at)
    {
        const std::string_view argument = argv[at];
        if (argument == "--full")
            options.isFull = true;
        else if (argument == "--output" && at + 1 < argc)
            options.output = argv[++at];
        else
            options.folder = argument;
    }
    return options;
}

void Report(const char* format, const fs::path& path, double writing, double reading)
{
    std::printf("%-7s%10ju bytes, written in %.1f ms, read in %.1f ms: %s\n", format,
                static_cast<std::uintmax_t>(fs::file_size(path)), writing, reading, path.string().c_str());
}

CCatalogFolder ThroughBinary(const CCatalogFolder& catalog, const fs::path& path)
{
    const std::wstring name = Vellum::Encodings::FromUTF8(path.string());
    const CStopwatch writing;
    {
        CbStreamWriteBinaryFile stream(name);
        Vellum::CWriterBinary(stream).Write(catalog);
        stream.Close();
    }
    const double writingTime = writing.GetMilliseconds();

    const CStopwatch reading;
    CCatalogFolder copy;
    CbStreamReadBinaryFile stream(name);
    Vellum::CReaderBinary(stream).Read(copy);
    Report("binary", path, writingTime, reading.GetMilliseconds());
    return copy;
}

template <class Writer, class Reader>
CCatalogFolder ThroughText(const char* format, const CCatalogFolder& catalog, const fs::path& path)
{
    const CStopwatch writing;
    std::ostringstream stream;
    Writer(stream).Write(catalog);
    Vellum::CTextFile().SetText(stream.str()).Write(path.wstring());
    const double writingTime = writing.GetMilliseconds();

    const CStopwatch reading;
    const std::string text = Vellum::CTextFile().Read(path.wstring()).GetTextRaw();
    CCatalogFolder copy;
    Reader(text).Read(copy);
    Report(format, path, writingTime, reading.GetMilliseconds());
    return copy;
}

void PrintLines(const std::string& text, std::size_t count)
{
    std::size_t end = 0;
    for (; count != 0 && end < text.size(); --count)
        end = text.find('\n', end) + 1;
    std::cout << text.substr(0, end);
    if (end < text.size())
        std::cout << "... and " << std::count(text.begin() + static_cast<std::ptrdiff_t>(end), text.end(), '\n')
                  << " more lines\n";
}

int Run(const SOptions& options)
{
    const CStopwatch scanning;
    const CCatalogFolder catalog = ScanFolder(options.folder);
    std::printf("%ju objects from %s, scanned in %.1f ms\n", static_cast<std::uintmax_t>(catalog.CountObjects()),
                options.folder.string().c_str(), scanning.GetMilliseconds());

    fs::create_directories(options.output);
    const fs::path jsonFile = options.output / "Catalog.json";
    const CCatalogFolder fromBinary = ThroughBinary(catalog, options.output / "Catalog.vellum");
    const auto fromJson = ThroughText<Vellum::CWriterJson, Vellum::CReaderJson>("JSON", catalog, jsonFile);
    const auto fromXml =
        ThroughText<Vellum::CWriterXml, Vellum::CReaderXml>("XML", catalog, options.output / "Catalog.xml");

    std::size_t differences = 0;
    for (const CCatalogFolder* copy : {&fromBinary, &fromJson, &fromXml})
        differences += Compare(catalog, *copy, std::cout);
    std::printf("%zu differences between the objects that were written and those that were read\n\n", differences);
    std::fflush(stdout);
    const std::string json = Vellum::CTextFile().Read(jsonFile.wstring()).GetTextRaw();
    PrintLines(json, options.isFull ? json.size() : 30);
    return differences == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    return RunMain("Catalog", [&] { return Run(ParseOptions(argc, argv)); });
}
