#include "Scribe/CScribe.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <mutex>
#include <utility>

#include "Platform/ForcedUnwind.h"
#include "Platform/StandardError.h"

namespace Scribing
{
namespace
{

// Never destroyed: exceptions may be raised, and so logged, while the process is coming to its end.
struct SSinkHolder
{
    std::mutex mutex;
    std::shared_ptr<const Sink> sink;
};

SSinkHolder& GetHolder()
{
    static SSinkHolder& holder = *new SSinkHolder;
    return holder;
}

std::shared_ptr<const Sink> GetSink()
{
    SSinkHolder& holder = GetHolder();
    const std::lock_guard lock(holder.mutex);
    return holder.sink;
}

// Without a buffer of the heap's: the entry may be about memory that can't be had.
void WriteLine(const SEntry& entry)
{
    std::array<char, 8192> line;
    const int length = std::snprintf(line.data(), line.size(), "%ls: %s(%d): %s: %ls\n", entry.source, entry.file,
                                     entry.line, entry.function, entry.text);
    if (length <= 0)
        return;
    const std::size_t size = std::min(static_cast<std::size_t>(length), line.size() - 1);
    line[size - 1] = '\n'; // also where the line was cut
    Vellum::Platform::WriteToStandardError({line.data(), size});
}

void Deliver(const SEntry& entry)
{
    const std::shared_ptr<const Sink> sink = GetSink();
    if (sink)
        (*sink)(entry);
    else
        WriteLine(entry);
}

} // namespace

void SetSink(Sink sink)
{
    std::shared_ptr<const Sink> next = sink ? std::make_shared<const Sink>(std::move(sink)) : nullptr;
    SSinkHolder& holder = GetHolder();
    const std::lock_guard lock(holder.mutex);
    holder.sink.swap(next);
}

CScribe::CScribe(const wchar_t* name) : name(name) {}

CScribe::~CScribe() = default;

void CScribe::Error(const char* file, int line, const char* function, const wchar_t* text, ...) const noexcept
{
    const Vellum::Platform::CNoCancellation scope; // sinks write
    try
    {
        std::array<wchar_t, 1024> message{};
        std::va_list arguments;
        va_start(arguments, text);
        std::vswprintf(message.data(), message.size(), text, arguments);
        va_end(arguments);
        message.back() = L'\0';
        Deliver({name.c_str(), file, line, function, message.data()});
    }
    catch (...)
    {
        return; // a lost entry is all that a failing log may cost
    }
}

} // namespace Scribing
