#pragma once

#include <string>

#include "Model/Tree.h"
#include "Model/Visitor.h"

// The three formats: what a tree is written as, and what a visitor is told of a document. Reading raises SRaised.
namespace Model
{

// What has reached the stream, and the class and function of what was raised, if anything was.
struct SWritten
{
    std::string document;
    std::string raised;
    bool operator==(const SWritten&) const = default;
};

// An odd document has what no writer makes and readers take: each write of a key, texts that are replaced or not used.
SWritten WriteBinary(const SNode& root, bool isOdd);
void ReadBinary(const std::string& document, bool isSequence, CVisitor& visitor);

SWritten WriteJson(const SNode& root, bool showPoint);
void ReadJson(const std::string& document, bool isSequence, CVisitor& visitor);

// Returns the number of the parser's error; what else fails is noted by the visitor.
SWritten WriteXml(const SNode& root);
int ReadXml(const std::string& document, bool isSequence, CVisitor& visitor);
std::string ShowXml(const std::string& document); // the parser's error and its tree, in one line

} // namespace Model
