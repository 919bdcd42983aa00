// vellum: looks into documents. Command.h tells what a command is, Commands.cpp which there are.

#include "CommandLine.h"
#include "Commands.h"

int main(int argc, char** argv) { return RunCommandLine(DescribeProgram(), argc, argv); }
