#pragma once

#include <string>
#include <vector>

namespace Vellum::Platform
{

// What a program needs at its start. As with Terminal.h, the library itself has no part in it; the source is in
// VellumProgram.

// What the program was started with, without its own name: UTF-8 on systems whose names are wide text, elsewhere the
// bytes as they are. Only a failed allocation is raised.
std::vector<std::string> GetArguments(int argc, char** argv);

// From here on standard input, output and error pass each byte as it is. A terminal takes them for UTF-8, and obeys
// the control sequences in them.
void PassBytes() noexcept;

} // namespace Vellum::Platform
