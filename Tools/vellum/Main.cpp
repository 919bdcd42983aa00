// vellum: looks into documents. Command.h tells what a command is, Commands.cpp which there are.

#include "Platform/Program.h"

#include "CommandLine.h"
#include "Commands.h"

int main(int argc, char** argv)
{
    Vellum::Platform::PassBytes();
    return RunCommandLine(DescribeProgram(), Vellum::Platform::GetArguments(argc, argv));
}
