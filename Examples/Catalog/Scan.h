#pragma once

#include <filesystem>

#include "CCatalogFolder.h"

// Walks a folder. Links are listed and not followed. What can't be read is listed with what is known of it; the folder
// itself must be there, or std::filesystem::filesystem_error is raised.
CCatalogFolder ScanFolder(const std::filesystem::path& path);
