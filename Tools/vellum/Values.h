#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <Vellum/CValue.h>

// A document that isn't in order, told in one sentence.
class CDamagedDocument : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The content of a document of any format, told by its bytes. CDamagedDocument if it can't be had; std::runtime_error
// if the bytes can't.
Vellum::CValue LoadValue(const std::string& name);
Vellum::CValue ParseValue(std::string_view document, const std::string& name);

// `line 3, column 5`, or `byte 17` of a binary document, and the path if there is one, in front of a reason.
std::string ShowPlace(std::uint32_t line, std::uint32_t column, std::uint64_t offset, std::string_view path);

// A value that is neither object nor sequence, as text documents have it: the digits of a number, a date, Base64.
std::string ToText(const Vellum::CValue& value);

// Whether it is one of the two texts, or a char.
bool IsInQuotes(const Vellum::CValue& value);
