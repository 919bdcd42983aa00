#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <Vellum/Vellum.h>

#include "Platform/Terminal.h"

#include "Vellum/src/ByteText.h"
#include "Vellum/src/CBinaryWalker.h"
#include "Vellum/src/PathText.h"
#include "Vellum/src/ValueKinds.h"

#include "BinaryValue.h"
#include "Commands.h"
#include "CProgress.h"
#include "Input.h"
#include "Text.h"

// An annotated listing: offset, bytes, what they are. One part of the document begins one line; what is inside an
// object or a sequence is indented below it.

namespace
{

using Vellum::EBinaryPart;
using Vellum::SBinaryPart;
using Vellum::SBinaryStep;

struct SDumpOptions
{
    std::string file;
    std::optional<std::uint32_t> depth;
    std::string path;
    bool isWhole = false;
};

constexpr std::size_t BytesInLine = 12;
constexpr std::size_t LinesOfPart = 4; // unless all is asked for
constexpr std::size_t MostOfText = 60; // likewise, code points; of keys and types never more

// How a sort of part is told. An object's and a sequence's name stand in the line before, at their field or element.
std::string Describe(const SBinaryPart& part, const std::vector<SBinaryStep>& path, std::string_view bytes,
                     std::size_t most)
{
    const auto kind = [&] { return std::string(Vellum::GetKindName(part.tag)); };
    const auto value = [&]
    {
        if (part.tag == Vellum::TagSequence)
            return std::string();
        return ' ' + (part.tag == Vellum::TagObject ? ShowText(part.text, MostOfText)
                                                    : ShowValue(part.tag, bytes.substr(part.head), most));
    };
    switch (part.what)
    {
    case EBinaryPart::Version:
        return "version " + std::to_string(part.count);
    case EBinaryPart::RootTag:
        return Vellum::GetKindName(part.tag) == nullptr ? "the root's tag" : "the root: " + kind();
    case EBinaryPart::StringCount:
        return Count(part.count, "string");
    case EBinaryPart::String:
        return std::to_string(part.count) + ": " + Quote(part.text, most);
    case EBinaryPart::Record:
        return Count(part.count, "section");
    case EBinaryPart::Section:
        return kind() + ", " + Count(part.count, "field");
    case EBinaryPart::Field:
        return ShowText(path.back().key, MostOfText) + ':' + value();
    case EBinaryPart::Sequence:
        return part.count == 0
                   ? "no elements"
                   : Count(part.count, "element") + ": " + (Vellum::GetKindName(part.tag) == nullptr ? "?" : kind());
    case EBinaryPart::Types:
        return part.text.empty() ? Count(part.count, "type name") : "all of type " + ShowText(part.text, MostOfText);
    case EBinaryPart::Element:
        return Vellum::ShowIndex(path.back().index) + value();
    default:
        return {};
    }
}

// Whether the path begins with the one that is looked for.
bool LeadsThrough(const std::vector<SBinaryStep>& path, std::string_view wanted)
{
    for (auto step = path.begin(); !wanted.empty(); ++step)
    {
        if (step == path.end())
            return false;
        if (step != path.begin() && !step->isElement)
        {
            if (!wanted.starts_with('.'))
                return false;
            wanted.remove_prefix(1);
        }
        const std::string index = step->isElement ? Vellum::ShowIndex(step->index) : std::string();
        const std::string_view name = step->isElement ? index : step->key;
        if (!wanted.starts_with(name))
            return false;
        wanted.remove_prefix(name.size());
        if (!wanted.empty() && wanted.front() != '.' && wanted.front() != '[')
            return false;
    }
    return true;
}

class CListing
{
public:
    CListing(const SDumpOptions& options, std::string_view document)
        : options(options),
          document(document),
          stream(document.data(), document.size()),
          walker(stream, [this](const SBinaryPart& part) { take(part); }),
          offsetWidth(std::max<std::size_t>(4, std::to_string(document.size()).size()))
    {
        if (!Vellum::Platform::IsTerminal(Vellum::Platform::EOutput::Standard))
            progress.emplace("listing", document.size());
    }
    CListing(const CListing&) = delete;
    CListing& operator=(const CListing&) = delete;

    EStatus Print();

private:
    void take(const SBinaryPart& part);
    void print(const SBinaryPart& part);
    void printNumbers(const SBinaryPart& part);
    void printLine(std::uint64_t offset, std::string_view bytes, const std::string& text);
    void printBytes(std::uint64_t offset, std::string_view bytes, const std::string& text);
    void printRest(std::uint64_t offset, std::uint64_t count, const char* noun, const char* where);

    const SDumpOptions& options;
    std::string_view document;
    CbStreamReadBinaryBuffer stream;
    Vellum::CBinaryWalker walker;
    std::optional<CProgress> progress; // where the listing itself isn't seen
    std::size_t offsetWidth;
    std::uint32_t level = 0; // objects and sequences around
    std::uint64_t end = 0;   // of the last part
    std::uint64_t foldStart = 0;
    bool hasPrinted = false;
};

// Levels below the wanted depth become one line.
void CListing::take(const SBinaryPart& part)
{
    const bool isStart = part.what == EBinaryPart::Record || part.what == EBinaryPart::Sequence;
    const bool isEnd = part.what == EBinaryPart::RecordEnd || part.what == EBinaryPart::SequenceEnd;
    const std::uint32_t most = options.depth.value_or(0xFFFFFFFF);
    const bool isWanted =
        options.path.empty() || (part.what > EBinaryPart::String && LeadsThrough(walker.GetPath(), options.path));
    end = part.offset + part.size;
    if (progress)
        progress->Advance(end);
    if (isStart && level++ == most)
        foldStart = part.offset;
    if (isWanted && level <= most)
        print(part);
    if (isEnd && level-- == most + std::uint64_t{1} && isWanted)
        printRest(foldStart, end - foldStart, "byte", " inside");
}

void CListing::print(const SBinaryPart& part)
{
    const std::string_view bytes =
        document.substr(static_cast<std::size_t>(part.offset), static_cast<std::size_t>(part.size));
    hasPrinted = true;
    if (part.what == EBinaryPart::Numbers)
        printNumbers(part);
    else if (part.what == EBinaryPart::Element && bytes.empty())
        printLine(part.offset, {}, Describe(part, walker.GetPath(), bytes, MostOfText));
    else if (!bytes.empty())
        printBytes(part.offset, bytes,
                   Describe(part, walker.GetPath(), bytes, options.isWhole ? bytes.size() + 1 : MostOfText));
}

// As many in a line as it holds, each with its value.
void CListing::printNumbers(const SBinaryPart& part)
{
    const std::size_t width = GetWidth(part.tag);
    const std::uint64_t inLine = BytesInLine / width;
    std::uint64_t at = 0;
    for (std::size_t line = 0; at < part.count && (options.isWhole || line < LinesOfPart); ++line)
    {
        std::string text = Vellum::ShowIndex(at);
        const auto start = static_cast<std::size_t>(part.offset + at * width);
        const std::uint64_t lineEnd = std::min(part.count, at + inLine);
        for (; at < lineEnd; ++at)
            text += ' ' +
                    ShowValue(part.tag, document.substr(static_cast<std::size_t>(part.offset + at * width), width), 1);
        printLine(start, document.substr(start, static_cast<std::size_t>(part.offset + at * width) - start), text);
    }
    if (at < part.count)
        printRest(part.offset + at * width, part.count - at, "more number", "");
}

void CListing::printBytes(std::uint64_t offset, std::string_view bytes, const std::string& text)
{
    for (std::size_t at = 0; at < bytes.size(); at += BytesInLine)
        if (!options.isWhole && at == LinesOfPart * BytesInLine)
            return printRest(offset + at, bytes.size() - at, "more byte", "");
        else
            printLine(offset + at, bytes.substr(at, BytesInLine), at == 0 ? text : std::string());
}

void CListing::printRest(std::uint64_t offset, std::uint64_t count, const char* noun, const char* where)
{
    printLine(offset, {}, "... " + Count(count, noun) + where);
}

void CListing::printLine(std::uint64_t offset, std::string_view bytes, const std::string& text)
{
    std::string line = std::to_string(offset);
    line.insert(0, offsetWidth - std::min(line.size(), offsetWidth), ' ');
    line += ' ';
    for (const char byte : bytes)
        line += ' ' + Vellum::ShowByte(static_cast<unsigned char>(byte));
    if (!text.empty())
    {
        line.resize(offsetWidth + 1 + 3 * BytesInLine + 2 * std::size_t{std::max(level, 1u)}, ' ');
        line += text;
    }
    std::cout << line << '\n';
}

EStatus CListing::Print()
{
    const std::optional<Vellum::SBinaryDamage> damage = walker.Walk();
    const std::uint64_t left = document.size() - end;
    if (!damage)
    {
        if (!hasPrinted)
            throw std::runtime_error("The document has no " + options.path + '.');
        if (left != 0)
            printRest(end, left, "byte", " behind the document");
        return EStatus::Done;
    }
    level = 0;
    printBytes(end, document.substr(static_cast<std::size_t>(end)), "?");
    std::cout << ShowDamage(*damage) << '\n';
    return EStatus::Differs;
}

EStatus Dump(const SDumpOptions& options)
{
    const std::string document = ReadInput(options.file);
    const Vellum::EFormat format = Recognize(document);
    if (format == Vellum::EFormat::Json || format == Vellum::EFormat::Xml)
        throw std::runtime_error(GetShownName(options.file) + " is a " + GetName(format) +
                                 " document, and dump is for binary ones.");
    return CListing(options, document).Print();
}

} // namespace

SCommand MakeDump()
{
    const auto options = std::make_shared<SDumpOptions>();
    return {
        .name = "dump",
        .summary = "Lists the bytes of a binary document, with what they are",
        .details =
            "Each part of the document begins a line: its offset, its bytes, and what they are. What is inside an "
            "object or a sequence is indented. A damaged document is listed as far as it goes; then come its next "
            "bytes, and what is wrong with them.",
        .options =
            {
                {"", "FILE", "The document", &options->file, true},
                {"-d,--depth", "NUMBER", "Shows no more levels of objects and sequences than that", &options->depth},
                {"-p,--path", "PATH", "Shows only the value with that path, as in lines[3].price", &options->path},
                {"-a,--all", "", "Shows long values and strings as a whole", &options->isWhole},
            },
        .run = [options] { return Dump(*options); },
    };
}
