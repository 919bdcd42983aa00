#include "Groundwork/CbExceptionOrigin.h"

#include <algorithm>
#include <new>

#include "Platform/ThreadId.h"
#include "Platform/Utf8.h"

namespace
{

constexpr std::size_t LongestCutFile = 80; // leaves most of the room to the function, which tells more

std::string_view OrEmpty(const char* text) { return text == nullptr ? std::string_view() : text; }

// Behind each text comes its NUL.
char* Append(char* to, std::string_view text)
{
    to = std::copy(text.begin(), text.end(), to);
    *to = '\0';
    return to + 1;
}

} // namespace

CbExceptionOrigin::CbExceptionOrigin(const char* file, std::uint32_t line, const char* function,
                                     const wchar_t* sentence) noexcept
    : codeLine(line), threadId(Vellum::Platform::GetCurrentThreadId())
{
    std::array<char, 255> utf8;
    const std::size_t size = Vellum::Platform::CopyUtf8(utf8, sentence == nullptr ? L"" : sentence);
    setTexts(OrEmpty(file), OrEmpty(function), {utf8.data(), size});
}

void CbExceptionOrigin::setTexts(std::string_view file, std::string_view function, std::string_view sentence) noexcept
{
    const std::string_view separator = function.empty() || sentence.empty() ? "" : ": ";
    const std::size_t messageSize = function.size() + separator.size() + sentence.size();
    const std::size_t size = file.size() + 1 + function.size() + 1 + messageSize + 1;
    char* to = own.data();
    if (size > own.size())
        try
        {
            auto block = std::make_shared<std::string>(size, '\0');
            to = block->data();
            shared = std::move(block);
        }
        catch (const std::bad_alloc&)
        {
            setCutTexts(file, function);
            return;
        }
    char* const functionText = Append(to, file);
    char* const messageText = Append(functionText, function);
    Append(std::copy(separator.begin(), separator.end(), std::copy(function.begin(), function.end(), messageText)),
           sentence);
    functionAt = static_cast<std::uint32_t>(functionText - to);
    messageAt = static_cast<std::uint32_t>(messageText - to);
}

void CbExceptionOrigin::setCutTexts(std::string_view file, std::string_view function) noexcept
{
    char* const functionText = Append(own.data(), file.substr(0, LongestCutFile));
    functionAt = messageAt = static_cast<std::uint32_t>(functionText - own.data());
    Append(functionText, function.substr(0, own.size() - functionAt - 1));
}
