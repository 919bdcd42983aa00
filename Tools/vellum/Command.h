#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

// How the program ends.
enum class EStatus
{
    Done = 0,    // as asked for; documents that were compared or looked at are equal, or in order
    Differs = 1, // documents differ, or one is damaged
    Failed = 2   // nothing of that could be found out: a wrong command line, a file that can't be had
};

// An option of a command, or one of its arguments.
struct SOption
{
    std::string names;    // "-o,--output"; an argument, which stands by itself, has none
    std::string argument; // what has to be given: "FILE", "NUMBER", "json|xml"; empty for a switch
    std::string text;     // what it is for, without a full stop
    std::variant<bool*, std::optional<std::uint32_t>*, std::string*, std::vector<std::string>*> target; // as given
    bool isRequired = false;
};

// SCommand: all there is to know about one command of the program. The command line is parsed by it, and --help, the
// man page and the completions of shells are made from it. `run` is called when all targets are filled.
struct SCommand
{
    std::string name;
    std::string summary; // a few words, without a full stop
    std::string details; // sentences; an empty line parts paragraphs
    std::vector<SOption> options;
    std::function<EStatus()> run;
};
