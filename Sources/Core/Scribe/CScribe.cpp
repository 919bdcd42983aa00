#include "Scribe/CScribe.h"

#include <array>
#include <atomic>
#include <charconv>
#include <cstdarg>
#include <cwchar>
#include <memory>
#include <mutex>
#include <span>
#include <string_view>
#include <utility>

#include "Platform/ForcedUnwind.h"
#include "Platform/StandardError.h"
#include "Platform/Utf8.h"

namespace Scribing
{
namespace
{

// A lock for a few instructions. std::mutex is made by code on some systems.
class CLock
{
public:
    void lock() noexcept
    {
        while (isTaken.test_and_set(std::memory_order_acquire))
            isTaken.wait(true, std::memory_order_relaxed);
    }
    void unlock() noexcept
    {
        isTaken.clear(std::memory_order_release);
        isTaken.notify_one();
    }

private:
    std::atomic_flag isTaken;
};

// Neither made nor destroyed by code: exceptions may be raised, and so logged, while statics come and go, and when
// there is no memory.
union USinkHolder
{
    struct
    {
        CLock lock;
        std::shared_ptr<const Sink> sink;
    } value = {};

    constexpr USinkHolder() {}
    ~USinkHolder() {}
};

constinit USinkHolder Holder;

std::shared_ptr<const Sink> GetSink()
{
    const std::lock_guard lock(Holder.value.lock);
    return Holder.value.sink;
}

// One line, in memory of its own: the entry may be about memory that can't be had. What is too long is cut.
class CLine
{
public:
    CLine& operator<<(std::string_view text)
    {
        size += text.copy(free().data(), free().size());
        return *this;
    }
    CLine& operator<<(const char* text) { return *this << (text == nullptr ? std::string_view() : text); }
    CLine& operator<<(const wchar_t* text)
    {
        size += Vellum::Platform::CopyUtf8(free(), text);
        return *this;
    }
    CLine& operator<<(int number)
    {
        std::array<char, 16> digits{}; // with NULs behind them
        std::to_chars(digits.begin(), digits.end(), number);
        return *this << digits.data();
    }

    // The line with its end, which always has room.
    std::string_view End()
    {
        bytes[size] = '\n';
        return {bytes.data(), size + 1};
    }

private:
    std::span<char> free() { return std::span(bytes).first(bytes.size() - 1).subspan(size); }

    std::array<char, 8192> bytes;
    std::size_t size = 0;
};

void WriteLine(const SEntry& entry)
{
    CLine line;
    line << entry.source << ": " << entry.file << "(" << entry.line << "): " << entry.function << ": " << entry.text;
    Vellum::Platform::WriteToStandardError(line.End());
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
    const std::lock_guard lock(Holder.value.lock);
    Holder.value.sink.swap(next);
}

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
        Deliver({source, file, line, function, message.data()});
    }
    catch (...)
    {
        return; // a lost entry is all that a failing log may cost
    }
}

} // namespace Scribing
