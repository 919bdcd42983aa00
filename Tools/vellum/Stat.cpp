#include <array>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <unordered_map>
#include <vector>
#include <Vellum/Vellum.h>

#include "Vellum/src/CBinaryWalker.h"
#include "Vellum/src/ValueKinds.h"

#include "BinaryValue.h"
#include "Commands.h"
#include "CProgress.h"
#include "CShares.h"
#include "Input.h"
#include "Text.h"
#include "TextPieces.h"

// Where the bytes of a document go. Each table counts every byte at most once: what lies in an object belongs to its
// innermost field and the innermost object around.

namespace
{

using Vellum::EBinaryPart;
using Vellum::SBinaryPart;

// Counts for texts that are known by their addresses: the walker's, of which a long one may be used very often.
class CSharesOfStrings
{
public:
    void Add(std::string_view name, std::uint64_t count, std::uint64_t bytes)
    {
        SShare& share = shares[name.data()];
        share.name = name;
        share.count += count;
        share.bytes += bytes;
    }
    void Print(const char* title, std::uint64_t size) const
    {
        CShares table(title);
        for (const auto& [address, share] : shares)
            table.Add(share.name, share.count, share.bytes);
        table.Print(size);
    }

private:
    struct SShare
    {
        std::string_view name;
        std::uint64_t count = 0;
        std::uint64_t bytes = 0;
    };
    std::unordered_map<const char*, SShare> shares;
};

// One binary document.
class CBinaryStatistics
{
public:
    explicit CBinaryStatistics(std::string_view document)
        : document(document),
          stream(document.data(), document.size()),
          walker(stream, [this](const SBinaryPart& part) { take(part); }),
          progress("counting", document.size())
    {
    }
    CBinaryStatistics(const CBinaryStatistics&) = delete;
    CBinaryStatistics& operator=(const CBinaryStatistics&) = delete;

    EStatus Print();

private:
    // The innermost field, and the type of the innermost object.
    struct SOwner
    {
        std::string_view key = "(root)";
        std::string_view type = "(root)";
    };

    void take(const SBinaryPart& part);
    void countPart(const SBinaryPart& part);
    void countKind(const SBinaryPart& part);

    std::string_view document;
    CbStreamReadBinaryBuffer stream;
    Vellum::CBinaryWalker walker;
    CProgress progress;
    std::uint64_t end = 0;
    std::vector<SOwner> owners{SOwner()}; // of the levels around
    SOwner next;                          // of the level that begins with the next part, if one does
    CShares parts{"Parts"};
    CShares kinds{"Kinds"};
    CSharesOfStrings keys;
    CSharesOfStrings types;
};

void CBinaryStatistics::take(const SBinaryPart& part)
{
    end = part.offset + part.size;
    progress.Advance(end);
    countPart(part);
    if (part.what <= EBinaryPart::String)
        return;
    countKind(part);
    SOwner owner = owners.back();
    const bool isField = part.what == EBinaryPart::Field;
    if (part.what == EBinaryPart::Record || part.what == EBinaryPart::Sequence)
        owners.push_back(owner = next);
    else if (part.what == EBinaryPart::RecordEnd || part.what == EBinaryPart::SequenceEnd)
        owners.pop_back();
    if (isField)
        owner.key = walker.GetPath().back().key;
    next = owner;
    if (part.tag == Vellum::TagObject && (isField || part.what == EBinaryPart::Element))
        next.type = part.text.data() == nullptr ? "(unknown)" : part.text;
    keys.Add(owner.key, isField, part.size);
    types.Add(owner.type, part.what == EBinaryPart::Record, part.size);
}

void CBinaryStatistics::countPart(const SBinaryPart& part)
{
    constexpr std::uint64_t Index = 4;
    const bool isField = part.what == EBinaryPart::Field;
    switch (part.what)
    {
    case EBinaryPart::String:
        return parts.Add("strings", 1, part.size);
    case EBinaryPart::Field:
        parts.Add("indices of keys", 1, Index);
        [[fallthrough]];
    case EBinaryPart::Element:
        if (part.tag == Vellum::TagObject)
            parts.Add("indices of types", 1, Index);
        else if (part.tag != Vellum::TagSequence)
            parts.Add("values", 1, part.size - (isField ? Index : 0));
        return;
    case EBinaryPart::Types:
        return parts.Add("indices of types", part.count, part.size);
    case EBinaryPart::Numbers:
        return parts.Add("values", part.count, part.size);
    case EBinaryPart::RecordEnd:
    case EBinaryPart::SequenceEnd:
        return;
    default:
        return parts.Add("tags and counts", 1, part.size);
    }
}

// An object and a sequence have what is in none of their values.
void CBinaryStatistics::countKind(const SBinaryPart& part)
{
    const bool isRecord = part.what == EBinaryPart::Record;
    if (isRecord || part.what == EBinaryPart::Section)
        kinds.Add(Vellum::GetKindName(Vellum::TagObject), isRecord, part.size);
    else if (part.what == EBinaryPart::Sequence || part.what == EBinaryPart::Types)
        kinds.Add(Vellum::GetKindName(Vellum::TagSequence), part.what == EBinaryPart::Sequence, part.size);
    else if (part.size > part.head) // a value, or numbers
        kinds.Add(Vellum::GetKindName(part.tag), part.what == EBinaryPart::Numbers ? part.count : 1,
                  part.size - part.head);
}

EStatus CBinaryStatistics::Print()
{
    const std::optional<Vellum::SBinaryDamage> damage = walker.Walk();
    if (end < document.size())
        parts.Add(damage ? "(not understood)" : "(behind the document)", 1, document.size() - end);
    parts.Print(document.size());
    kinds.Print(document.size());
    keys.Print("Keys", document.size());
    types.Print("Types", document.size());
    if (!damage)
        return EStatus::Done;
    std::cout << '\n' << ShowDamage(*damage) << '\n';
    return EStatus::Differs;
}

std::string_view Unquote(std::string_view name)
{
    return name.starts_with('"') ? name.substr(1, name.size() - 1 - (name.size() > 1 && name.ends_with('"'))) : name;
}

// A text document.
void PrintPieces(std::string_view document, void (*cut)(std::string_view, const PieceVisitor&))
{
    static constexpr std::array<const char*, 6> Sorts{
        "names", "texts", "numbers, true, false, null", "brackets and such", "white space", "comments, declarations"};
    CShares pieces("Parts");
    CShares names("Names");
    {
        CProgress progress("counting", document.size());
        cut(document,
            [&](EPiece what, std::string_view piece)
            {
                progress.Advance(static_cast<std::uint64_t>(piece.data() - document.data()));
                pieces.Add(Sorts.at(static_cast<std::size_t>(what)), 1, piece.size());
                if (what == EPiece::Name)
                    names.Add(Unquote(piece), 1, piece.size());
            });
    }
    pieces.Print(document.size());
    names.Print(document.size());
}

EStatus Stat(const std::string& file)
{
    const std::string document = ReadInput(file);
    const Vellum::EFormat format = Recognize(document);
    if (format == Vellum::EFormat::Any)
        throw std::runtime_error(GetShownName(file) + " is no document.");
    std::cout << GetShownName(file) << ": " << GetName(format) << ", " << Count(document.size(), "byte") << '\n';
    if (format == Vellum::EFormat::Binary)
        return CBinaryStatistics(document).Print();
    PrintPieces(document, format == Vellum::EFormat::Json ? CutJson : CutXml);
    return EStatus::Done;
}

} // namespace

SCommand MakeStat()
{
    const auto file = std::make_shared<std::string>();
    return {
        .name = "stat",
        .summary = "Tells where the bytes of a document go",
        .details =
            "Prints tables of parts, kinds, keys and types, or names, with how many there are, their bytes and "
            "their share of the document. What is nested belongs to the innermost field, and to the innermost "
            "object. Of a damaged binary document that much is counted as can be understood; the last line tells "
            "what is wrong.",
        .options = {{"", "FILE", "The document", file.get(), true}},
        .run = [file] { return Stat(*file); },
    };
}
