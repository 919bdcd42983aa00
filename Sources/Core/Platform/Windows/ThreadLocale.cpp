#include "Platform/ThreadLocale.h"

#include <clocale>
#include <cstring>
#include <locale.h>
#include <memory>
#include <new>
#include <string>
#include <windows.h>

namespace Vellum::Platform
{

namespace
{

constexpr int Failed = -1;

// Whether the calling thread has a locale of its own; the answer is how it was before. Some compilers come with a
// function of this name that can't do it and says so: then that of the C library is asked.
int ConfigureThreadLocale(int mode) noexcept
{
    const int before = ::_configthreadlocale(mode);
    if (before != Failed)
        return before;
    const HMODULE library = ::GetModuleHandleW(L"msvcrt.dll");
    const FARPROC found = library == nullptr ? nullptr : ::GetProcAddress(library, "_configthreadlocale");
    return found == nullptr ? Failed : reinterpret_cast<int (*)(int)>(reinterpret_cast<void*>(found))(mode);
}

// CThreadLocale: the locale of a thread as its name. Most threads have none of their own.
struct SLocale
{
    int mode;
    std::unique_ptr<char[]> name;
};

// Null if there is no memory for it.
std::unique_ptr<SLocale> RememberLocale(int mode) noexcept
{
    const char* const name = std::setlocale(LC_ALL, nullptr);
    const std::size_t size = std::strlen(name) + 1;
    std::unique_ptr<SLocale> locale(new (std::nothrow) SLocale{mode, nullptr});
    if (locale == nullptr)
        return nullptr;
    locale->name.reset(new (std::nothrow) char[size]);
    if (locale->name == nullptr)
        return nullptr;
    std::memcpy(locale->name.get(), name, size);
    return locale;
}

// Stands for the locale of the process.
SLocale OfProcess = {_DISABLE_PER_THREAD_LOCALE, nullptr};

} // namespace

ThreadLocale EnterCLocale() noexcept
{
    const int before = ConfigureThreadLocale(_ENABLE_PER_THREAD_LOCALE);
    if (before == Failed)
        return nullptr;
    SLocale* const previous = before == _DISABLE_PER_THREAD_LOCALE ? &OfProcess : RememberLocale(before).release();
    if (previous != nullptr)
        std::setlocale(LC_ALL, "C");
    return previous;
}

void LeaveCLocale(ThreadLocale previous) noexcept
{
    if (previous == &OfProcess)
        ConfigureThreadLocale(_DISABLE_PER_THREAD_LOCALE);
    else if (const std::unique_ptr<SLocale> locale(static_cast<SLocale*>(previous)); locale != nullptr)
        std::setlocale(LC_ALL, locale->name.get());
}

bool UsesDecimalPoint() noexcept { return std::strcmp(std::localeconv()->decimal_point, ".") == 0; }

} // namespace Vellum::Platform
