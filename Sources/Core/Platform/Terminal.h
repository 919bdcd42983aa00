#pragma once

namespace Vellum::Platform
{

enum class EOutput
{
    Standard,
    Error
};

// Whether somebody watches what the process prints there. Only programs ask: the library itself has no part in it, and
// the source is in a library of its own, VellumProgram.
bool IsTerminal(EOutput output) noexcept;

} // namespace Vellum::Platform
