#pragma once

#include <string_view>

namespace Vellum::Platform
{

// Writes a text to the standard error of the process, in one piece, so that the lines of several threads don't mix.
// What can't be written is lost, and no signal ends the process for it.
//
// Threads  Any thread.
void WriteToStandardError(std::string_view text) noexcept;

} // namespace Vellum::Platform
