#pragma once

#include <string_view>

// Where Wine, which tests run under on other systems, differs from what is told of the system itself. This is all:
// what isn't here is expected of both.
namespace Support::Emulator
{

// It has no tables for some Asian code pages, and none with shift states but UTF-7: LacksCodePage of System.h.

// A file that somebody has open, and shares for reading alone, is replaced by another one all the same.
bool ReplacesOpenFiles();

} // namespace Support::Emulator
