#pragma once

namespace Vellum::Platform
{

enum class EOutput
{
    Standard,
    Error
};

// Whether somebody watches what the process prints there. Only programs ask: the library itself has no part in it, and
// the source is an object of its own, VellumTerminal.
bool IsTerminal(EOutput output) noexcept;

} // namespace Vellum::Platform
