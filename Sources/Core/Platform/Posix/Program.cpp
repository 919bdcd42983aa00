#include "Platform/Program.h"

namespace Vellum::Platform
{

std::vector<std::string> GetArguments(int argc, char** argv)
{
    std::vector<std::string> arguments;
    for (int index = 1; index < argc; ++index)
        arguments.emplace_back(argv[index]);
    return arguments;
}

// Everything is bytes here, and the user's terminal shows them in the encoding that it is set to.
void PassBytes() noexcept {}

} // namespace Vellum::Platform
