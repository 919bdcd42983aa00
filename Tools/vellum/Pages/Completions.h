#pragma once

#include <string>

struct SProgram;

// What shells know of the program's command line: commands, options and what may stand behind them. Where a file is
// asked for, it is a name of one.
std::string MakeBashCompletion(const SProgram& program);
std::string MakeZshCompletion(const SProgram& program);
std::string MakeFishCompletion(const SProgram& program);
