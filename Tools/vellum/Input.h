#pragma once

#include <Describe/Places.h> // EFormat
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

// The bytes of a file, or of standard input if the name is "-". std::runtime_error if they can't be had.
std::string ReadInput(const std::string& name);

// The name of an input as it is told: "Standard input" for "-".
std::string GetShownName(const std::string& name);

// Which format a document seems to have by its first bytes; EFormat::Any if they are those of none. A binary document
// of a later version is one, too.
Vellum::EFormat Recognize(std::string_view document);

// "binary", "json", "xml"; "unknown" for EFormat::Any.
const char* GetName(Vellum::EFormat format);

// Lets the function write to a file, which is made when the first byte is there, or to standard output if the name is
// "-". std::runtime_error if the bytes don't arrive.
void WriteOutput(const std::string& name, const std::function<void(std::ostream&)>& write);
