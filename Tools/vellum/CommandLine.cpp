#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>
#include <Scribe/CScribe.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <variant>

#include "Commands.h"
#include "Values.h"

namespace
{

// "FILE" for an argument, "-o,--output" for an option, as the parser wants to have them.
std::string GetParserName(const SOption& option) { return option.names.empty() ? option.argument : option.names; }

// Lines of 80 columns at most; an empty line parts paragraphs.
std::string Wrap(const std::string& text)
{
    std::istringstream lines(text);
    std::string wrapped;
    for (std::string line; std::getline(lines, line); wrapped += '\n')
    {
        std::istringstream words(line);
        std::size_t column = 0;
        for (std::string word; words >> word; column += word.size() + 1)
        {
            const bool fits = column + word.size() <= 80;
            wrapped += column == 0 ? "" : fits ? " " : "\n";
            column = fits ? column : 0;
            wrapped += word;
        }
    }
    return wrapped;
}

void AddOption(CLI::App& parser, const SOption& option)
{
    std::visit(
        [&](auto* target)
        {
            if constexpr (std::is_same_v<decltype(target), bool*>)
                parser.add_flag(option.names, *target, option.text);
            else
            {
                CLI::Option* const added = parser.add_option(GetParserName(option), *target, option.text);
                added->required(option.isRequired);
                if (!option.names.empty())
                    added->type_name(option.argument);
                if (option.argument.find('|') != std::string::npos)
                    added->check(CLI::IsMember(CLI::detail::split(option.argument, '|')))->type_name(option.argument);
            }
        },
        option.target);
}

void AddCommand(CLI::App& parser, const SCommand& command, EStatus& status)
{
    CLI::App* const added = parser.add_subcommand(command.name, command.summary);
    added->footer(Wrap(command.details));
    for (const SOption& option : command.options)
        AddOption(*added, option);
    added->callback([&] { status = command.run(); });
}

// What has been printed must have arrived.
EStatus Finish(EStatus status)
{
    std::cout.flush();
    if (std::cout && std::fflush(stdout) == 0)
        return status;
    throw std::runtime_error("Standard output can't be written.");
}

} // namespace

int RunCommandLine(const SProgram& program, const std::vector<std::string>& arguments)
{
    Scribing::SetSink([](const Scribing::SEntry&) {}); // what goes wrong is told below, for people
    EStatus status = EStatus::Done;
    CLI::App parser(std::string("vellum ") + program.summary, program.name);
    parser.footer(Wrap(std::string(program.details) + "\n\nExit status: " + program.exitStatus));
    parser.set_version_flag("--version", std::string(program.name) + ' ' + program.version);
    parser.require_subcommand(1);
    for (const SCommand& command : program.commands)
        AddCommand(parser, command, status);
    try
    {
        parser.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend())); // it takes the last one first
        status = Finish(status);
    }
    catch (const CLI::ParseError& error)
    {
        if (parser.exit(error) != 0)
            status = EStatus::Failed;
    }
    catch (const std::exception& exception)
    {
        std::cout.flush();
        std::cerr << program.name << ": " << exception.what() << '\n';
        const bool isDamaged = dynamic_cast<const CDamagedDocument*>(&exception) != nullptr;
        status = isDamaged ? EStatus::Differs : EStatus::Failed;
    }
    return static_cast<int>(status);
}
