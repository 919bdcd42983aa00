#pragma once

#include <vector>

#include "Command.h"

// Each command is one source of that name.
SCommand MakeCheck();
SCommand MakeConvert();
SCommand MakeDiff();
SCommand MakeDump();
SCommand MakeShow();
SCommand MakeStat();

// What is told about the program as a whole.
struct SProgram
{
    const char* name;
    const char* version;
    const char* summary;
    const char* details;
    const char* exitStatus;
    std::vector<SCommand> commands;
};

SProgram DescribeProgram();
