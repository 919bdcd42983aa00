#include "TextPieces.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace
{

constexpr std::string_view Blanks = " \t\r\n";

// The text up to the first of the letters, or all of it.
std::string_view UpTo(std::string_view text, std::string_view letters)
{
    return text.substr(0, text.find_first_of(letters));
}

// The text up to and with a piece behind its first `from` letters, or all of it.
std::string_view Through(std::string_view text, std::string_view piece, std::size_t from)
{
    const std::size_t found = text.find(piece, from);
    return found == std::string_view::npos ? text : text.substr(0, found + piece.size());
}

std::string_view GetBlank(std::string_view text) { return text.substr(0, text.find_first_not_of(Blanks)); }

// A text with its quotation marks; a backslash and what follows it are one.
std::string_view GetQuoted(std::string_view text)
{
    std::size_t end = 1;
    while (end < text.size() && text[end] != '"')
        end += text[end] == '\\' ? 2 : 1;
    return text.substr(0, end + 1);
}

bool IsKey(std::string_view behind)
{
    behind.remove_prefix(GetBlank(behind).size());
    return behind.starts_with(':');
}

// The contents of a tag, between its name and its end.
void CutAttributes(std::string_view tag, const PieceVisitor& visit)
{
    while (!tag.empty())
    {
        std::string_view piece = GetBlank(tag);
        EPiece what = EPiece::Blank;
        if (piece.empty() && (tag.front() == '"' || tag.front() == '\''))
        {
            piece = Through(tag, tag.substr(0, 1), 1);
            what = EPiece::Text;
        }
        else if (piece.empty() && (tag.front() == '=' || tag.front() == '/' || tag.front() == '>'))
        {
            piece = tag.substr(0, 1);
            what = EPiece::Mark;
        }
        else if (piece.empty())
        {
            piece = UpTo(tag, " \t\r\n=/>\"'");
            what = EPiece::Name;
        }
        visit(what, piece);
        tag.remove_prefix(piece.size());
    }
}

// A tag up to its ">", which may stand in the value of an attribute as well.
std::string_view GetTag(std::string_view text)
{
    std::size_t end = 0;
    for (char quote = 0; end < text.size() && (quote != 0 || text[end] != '>'); ++end)
        if (quote == 0 && (text[end] == '"' || text[end] == '\''))
            quote = text[end];
        else if (text[end] == quote)
            quote = 0;
    return text.substr(0, end + 1);
}

void CutTag(std::string_view tag, const PieceVisitor& visit)
{
    const std::size_t marks = tag.starts_with("</") ? 2 : 1;
    visit(EPiece::Mark, tag.substr(0, marks));
    CutAttributes(tag.substr(marks), visit);
}

// What begins with one and ends with the other isn't cut.
struct SWhole
{
    std::string_view start;
    std::string_view end;
    EPiece what;
};

constexpr std::array<SWhole, 4> Wholes{{
    {"<!--", "-->", EPiece::Aside},
    {"<![CDATA[", "]]>", EPiece::Text},
    {"<!", ">", EPiece::Aside},
    {"<?", "?>", EPiece::Aside},
}};

} // namespace

void CutJson(std::string_view document, const PieceVisitor& visit)
{
    for (std::string_view piece; !document.empty(); document.remove_prefix(piece.size()))
    {
        const char first = document.front();
        EPiece what = EPiece::Number;
        if (piece = GetBlank(document); !piece.empty())
            what = EPiece::Blank;
        else if (first == '"')
        {
            piece = GetQuoted(document);
            what = IsKey(document.substr(piece.size())) ? EPiece::Name : EPiece::Text;
        }
        else if (std::string_view("{}[],:").find(first) != std::string_view::npos)
        {
            piece = document.substr(0, 1);
            what = EPiece::Mark;
        }
        else
            piece = UpTo(document, " \t\r\n{}[],:\"");
        visit(what, piece);
    }
}

void CutXml(std::string_view document, const PieceVisitor& visit)
{
    for (std::string_view piece; !document.empty(); document.remove_prefix(piece.size()))
    {
        const auto whole =
            std::ranges::find_if(Wholes, [&](const SWhole& each) { return document.starts_with(each.start); });
        if (whole != Wholes.end())
            visit(whole->what, piece = Through(document, whole->end, whole->start.size()));
        else if (document.front() == '<')
            CutTag(piece = GetTag(document), visit);
        else
        {
            piece = UpTo(document, "<");
            visit(GetBlank(piece).size() == piece.size() ? EPiece::Blank : EPiece::Text, piece);
        }
    }
}
