// VellumPages: makes the man page and the completions of shells from the description of the program, when it is built.
//
//   VellumPages FOLDER    makes vellum.1, vellum.bash, _vellum and vellum.fish in FOLDER

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "Commands.h"
#include "Completions.h"
#include "ManPage.h"

namespace
{

void WritePage(const std::filesystem::path& path, const std::string& text)
{
    std::ofstream file(path);
    if (!(file << text).flush())
        throw std::runtime_error(path.string() + " can't be written.");
}

} // namespace

int main(int argc, char** argv)
{
    try
    {
        const std::filesystem::path folder = argc > 1 ? argv[1] : ".";
        const SProgram program = DescribeProgram();
        WritePage(folder / "vellum.1", MakeManPage(program));
        WritePage(folder / "vellum.bash", MakeBashCompletion(program));
        WritePage(folder / "_vellum", MakeZshCompletion(program));
        WritePage(folder / "vellum.fish", MakeFishCompletion(program));
    }
    catch (const std::exception& exception)
    {
        std::cerr << "VellumPages: " << exception.what() << '\n';
        return 1;
    }
    return 0;
}
