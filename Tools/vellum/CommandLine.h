#pragma once

struct SProgram;

// Parses the command line, runs the command that it asks for, and returns the program's exit status. Whatever goes
// wrong is told in one line on standard error.
int RunCommandLine(const SProgram& program, int argc, char** argv);
