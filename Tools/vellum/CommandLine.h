#pragma once

#include <string>
#include <vector>

struct SProgram;

// Parses the words of the command line behind the program's name, runs the command that it asks for, and returns the
// program's exit status. Whatever goes wrong is told in one line on standard error.
int RunCommandLine(const SProgram& program, const std::vector<std::string>& arguments);
