#pragma once

#include <functional>
#include <string_view>

// What a piece of a JSON or XML document is.
enum class EPiece
{
    Name,   // a key, the name of an element or attribute
    Text,   // with its quotation marks in JSON
    Number, // in JSON, true, false and null as well
    Mark,   // brackets, commas and so on
    Blank,  // white space between the others
    Aside   // comments, declarations, processing instructions
};

// Called for each piece, in the order of the document. All pieces together are the document.
using PieceVisitor = std::function<void(EPiece what, std::string_view piece)>;

// Cut a document into its pieces by their looks. What is wrong in it is a piece of some sort, too.
void CutJson(std::string_view document, const PieceVisitor& visit);
void CutXml(std::string_view document, const PieceVisitor& visit);
