#include "Completions.h"

#include "Commands.h"
#include "Words.h"

namespace
{

bool IsChoice(const SOption& option) { return option.argument.find('|') != std::string::npos; }

// "json xml binary" of "json|xml|binary".
std::string GetChoices(const SOption& option) { return Replace(option.argument, "|", " "); }

bool IsFile(const SOption& option)
{
    for (const char* const argument : {"FILE", "FIRST", "SECOND", "OUTPUT"})
        if (option.argument == argument)
            return true;
    return false;
}

// In single quotes, for zsh and fish.
std::string Quote(const std::string& text) { return '\'' + Replace(text, "'", "'\\''") + '\''; }

std::string ListCommands(const SProgram& program)
{
    std::string list;
    for (const SCommand& command : program.commands)
        list += command.name + ' ';
    return list;
}

std::string ListOptions(const SCommand& command)
{
    std::string list = "--help";
    for (const SOption& option : command.options)
        for (const std::string& name : Split(option.names, ','))
            list += ' ' + name;
    return list;
}

// A branch for each option whose value isn't the name of a file.
std::string MakeBashValues(const SCommand& command)
{
    std::string branches;
    for (const SOption& option : command.options)
        if (!option.argument.empty() && !IsFile(option))
            for (const std::string& name : Split(option.names, ','))
                branches += "        '" + command.name + ' ' + name + "') mapfile -t COMPREPLY < <(compgen -W '" +
                            (IsChoice(option) ? GetChoices(option) : "") + "' -- \"$word\"); return ;;\n";
    return branches;
}

} // namespace

std::string MakeBashCompletion(const SProgram& program)
{
    std::string script = "_vellum()\n"
                         "{\n"
                         "    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}\n"
                         "    local command='' words=''\n"
                         "    ((COMP_CWORD == 1)) || command=${COMP_WORDS[1]}\n"
                         "    case \"$command $before\" in\n";
    for (const SCommand& command : program.commands)
        script += MakeBashValues(command);
    script += "    esac\n"
              "    case \"$command\" in\n"
              "        '') words='" +
              ListCommands(program) + "--help --version' ;;\n";
    for (const SCommand& command : program.commands)
        script += "        " + command.name + ") words='" + ListOptions(command) + "' ;;\n";
    return script + "    esac\n"
                    "    if [[ -z $command || $word == -* ]]; then\n"
                    "        mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\")\n"
                    "    else\n"
                    "        mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n"
                    "    fi\n"
                    "}\n"
                    "complete -o filenames -F _vellum vellum\n";
}

namespace
{

// The action behind a value: names of files, a choice, or nothing.
std::string MakeZshAction(const SOption& option)
{
    return Replace(option.argument, "|", " or ") + ':' +
           (IsFile(option)     ? "_files"
            : IsChoice(option) ? '(' + GetChoices(option) + ')'
                               : "");
}

std::string MakeZshOption(const SOption& option)
{
    std::string text = Replace(Replace(option.text, "[", "\\["), "]", "\\]");
    const bool isMany = std::holds_alternative<std::vector<std::string>*>(option.target);
    if (option.names.empty())
        return ' ' + Quote((isMany ? "*:" : ":") + MakeZshAction(option));
    std::string list;
    for (const std::string& name : Split(option.names, ','))
        list += ' ' + Quote(name + '[' + text + ']' + (option.argument.empty() ? "" : ':' + MakeZshAction(option)));
    return list;
}

} // namespace

std::string MakeZshCompletion(const SProgram& program)
{
    std::string commands;
    std::string branches;
    for (const SCommand& command : program.commands)
    {
        commands += "        " + Quote(command.name + ':' + command.summary) + '\n';
        branches += "        " + command.name + ") _arguments '--help[Tells how the command is used]'";
        for (const SOption& option : command.options)
            branches += MakeZshOption(option);
        branches += " ;;\n";
    }
    return "#compdef vellum\n"
           "\n"
           "_vellum()\n"
           "{\n"
           "    local -a commands=(\n" +
           commands +
           "    )\n"
           "    local state\n"
           "    local -a line\n"
           "    _arguments -C '--help[Tells how the program is used]' '--version[Tells the version]' '1: :->command' "
           "'*:: :->rest'\n"
           "    [[ $state != command ]] || _describe command commands\n"
           "    [[ $state == rest ]] || return\n"
           "    case $line[1] in\n" +
           branches +
           "    esac\n"
           "}\n"
           "\n"
           "_vellum \"$@\"\n";
}

namespace
{

// -s of "-o", -l of "--output".
std::string MakeFishNames(const SOption& option)
{
    std::string names;
    for (const std::string& name : Split(option.names, ','))
        names += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    return names;
}

std::string MakeFishOption(const SCommand& command, const SOption& option)
{
    std::string line =
        "complete -c vellum -n '__fish_seen_subcommand_from " + command.name + '\'' + MakeFishNames(option);
    if (!option.argument.empty())
        line += IsFile(option) ? " -r" : " -x";
    if (IsChoice(option))
        line += " -a " + Quote(GetChoices(option));
    return line + " -d " + Quote(option.text) + '\n';
}

} // namespace

std::string MakeFishCompletion(const SProgram& program)
{
    std::string script = "complete -c vellum -n __fish_use_subcommand -f\n"
                         "complete -c vellum -n __fish_use_subcommand -l version -d 'Tells the version'\n"
                         "complete -c vellum -s h -l help -d 'Tells how it is used'\n";
    for (const SCommand& command : program.commands)
    {
        script +=
            "complete -c vellum -n __fish_use_subcommand -a " + command.name + " -d " + Quote(command.summary) + '\n';
        for (const SOption& option : command.options)
            if (!option.names.empty())
                script += MakeFishOption(command, option);
    }
    return script;
}
