#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "Platform/ModuleHandle.h"

namespace Vellum::Platform
{

// The bytes of a resource that was linked into a module, under a number of which the low 16 bits count and a type such
// as L"TEXT". They lie where the module is loaded and are good until it is unloaded. Nothing if that very module has no
// such resource; those of the libraries that it uses aren't its own. Only a failed allocation is raised.
//
// Threads  Any thread.
std::optional<std::span<const unsigned char>> FindModuleResource(HINSTANCE module, int id, std::wstring_view type);

} // namespace Vellum::Platform
