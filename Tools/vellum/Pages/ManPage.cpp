#include "ManPage.h"

#include <string_view>

#include "Commands.h"
#include "Words.h"

namespace
{

// A line of text as it stands: a minus stays one, and none begins a request.
std::string Escape(std::string_view text)
{
    std::string escaped = text.starts_with('.') || text.starts_with('\'') ? "\\&" : "";
    for (const char letter : text)
        if (letter == '\\')
            escaped += "\\e";
        else if (letter == '-')
            escaped += "\\-";
        else
            escaped += letter;
    return escaped;
}

// An empty line parts paragraphs.
std::string MakeParagraphs(std::string_view text)
{
    std::string page;
    for (const std::string& line : Split(text, '\n'))
        page += line.empty() ? ".PP\n" : Escape(line) + '\n';
    return page;
}

std::string MakeItem(const std::string& head, std::string_view text)
{
    return ".TP\n" + head + '\n' + Escape(text) + ".\n";
}

std::string MakeHead(const SOption& option)
{
    std::string head;
    for (const std::string& name : Split(option.names, ','))
        head += (head.empty() ? "\\fB" : ", \\fB") + Escape(name) + "\\fR";
    if (!option.argument.empty())
        head += (head.empty() ? "\\fI" : " \\fI") + Escape(option.argument) + "\\fR";
    return head;
}

std::string MakeCommand(const SCommand& command)
{
    std::string page = ".SS \"" + Escape(GetSynopsis(command)) + "\"\n" + MakeParagraphs(command.details);
    for (const SOption& option : command.options)
        page += MakeItem(MakeHead(option), option.text);
    return page;
}

} // namespace

std::string MakeManPage(const SProgram& program)
{
    const std::string name = program.name;
    std::string page = ".TH VELLUM 1 \"\" \"" + name + ' ' + program.version + "\" \"User Commands\"\n";
    page += ".SH NAME\n" + name + " \\- " + Escape(program.summary) + '\n';
    page += ".SH SYNOPSIS\n";
    for (const SCommand& command : program.commands)
        page += ".B " + name + ' ' + Escape(GetSynopsis(command)) + "\n.br\n";
    page += ".B " + name + " \\-\\-help\n.br\n.B " + name + " \\-\\-version\n";
    page += ".SH DESCRIPTION\n" + MakeParagraphs(program.details);
    page += ".SH COMMANDS\n";
    for (const SCommand& command : program.commands)
        page += MakeCommand(command);
    page +=
        ".SH OPTIONS\n" + MakeItem("\\fB\\-h\\fR, \\fB\\-\\-help\\fR", "Tells how the program or a command is used");
    page += MakeItem("\\fB\\-\\-version\\fR", "Tells the version");
    return page + ".SH EXIT STATUS\n" + MakeParagraphs(program.exitStatus);
}
