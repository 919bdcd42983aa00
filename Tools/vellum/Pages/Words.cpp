#include "Words.h"

#include "Command.h"

std::vector<std::string> Split(std::string_view text, char separator)
{
    std::vector<std::string> pieces;
    while (!text.empty())
    {
        const std::size_t end = text.find(separator);
        pieces.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return pieces;
}

std::string Replace(std::string text, std::string_view piece, std::string_view by)
{
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + by.size()))
        text.replace(at, piece.size(), by);
    return text;
}

std::string GetSynopsis(const SCommand& command)
{
    std::string synopsis = command.name;
    for (const SOption& option : command.options)
    {
        std::string one = option.names.substr(0, option.names.find(','));
        if (!option.argument.empty())
            one += (one.empty() ? "" : " ") + option.argument;
        if (std::holds_alternative<std::vector<std::string>*>(option.target))
            one += "...";
        synopsis += option.isRequired ? ' ' + one : " [" + one + ']';
    }
    return synopsis;
}
