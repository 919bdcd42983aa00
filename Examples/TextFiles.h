#pragma once

#include <filesystem>
#include <string>

// Whole files as text. Both raise std::ios_base::failure when the file can't be had.
std::string LoadText(const std::filesystem::path& path);
void SaveText(const std::filesystem::path& path, const std::string& text);
