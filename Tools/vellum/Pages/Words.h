#pragma once

#include <string>
#include <string_view>
#include <vector>

struct SCommand;

// The pieces of a text between separators; none of an empty text.
std::vector<std::string> Split(std::string_view text, char separator);

// The text with a piece of it replaced wherever it stands.
std::string Replace(std::string text, std::string_view piece, std::string_view by);

// "dump [--depth NUMBER] FILE"
std::string GetSynopsis(const SCommand& command);
