#include "Platform/ThreadLocale.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <locale.h>
#include <memory>
#include <new>

namespace Vellum::Platform
{

namespace
{

constexpr int NotThere = -1; // the C library has one locale for all threads

// The locale of a thread that has one of its own.
struct SLocale
{
    std::unique_ptr<char[]> name;
};

// Null if there is no memory for it.
std::unique_ptr<SLocale> RememberLocale() noexcept
{
    const char* const name = std::setlocale(LC_ALL, nullptr);
    const std::size_t size = std::strlen(name) + 1;
    std::unique_ptr<SLocale> locale(new (std::nothrow) SLocale{});
    if (locale == nullptr)
        return nullptr;
    locale->name.reset(new (std::nothrow) char[size]);
    if (locale->name == nullptr)
        return nullptr;
    std::memcpy(locale->name.get(), name, size);
    return locale;
}

// What the thread was in, where that isn't a locale of its own: the one of the process, either with a C library that
// has more than one, or without. In the second case the thread stays in it, and just counts how often it was to leave.
SLocale OfProcess;
SLocale OfAll;
thread_local unsigned int scopes = 0;

bool IsPoint(char separator) noexcept { return separator == '.'; }

char GetSeparator() noexcept { return *std::localeconv()->decimal_point; }

} // namespace

ThreadLocale EnterCLocale() noexcept
{
    const int before = ::_configthreadlocale(_ENABLE_PER_THREAD_LOCALE);
    if (before == NotThere)
    {
        ++scopes;
        return &OfAll;
    }
    SLocale* const previous = before == _DISABLE_PER_THREAD_LOCALE ? &OfProcess : RememberLocale().release();
    if (previous != nullptr)
        std::setlocale(LC_ALL, "C");
    return previous;
}

void LeaveCLocale(ThreadLocale previous) noexcept
{
    if (previous == &OfAll)
        --scopes;
    else if (previous == &OfProcess)
        ::_configthreadlocale(_DISABLE_PER_THREAD_LOCALE);
    else if (const std::unique_ptr<SLocale> locale(static_cast<SLocale*>(previous)); locale != nullptr)
        std::setlocale(LC_ALL, locale->name.get());
}

bool UsesDecimalPoint() noexcept { return scopes != 0 || IsPoint(GetSeparator()); }

// Where the C library would look for another separator, it is given that one, and none that it would take itself.
double ScanReal(const std::string& text, std::size_t& size)
{
    const char separator = GetSeparator();
    std::string given = text;
    if (scopes != 0 && !IsPoint(separator))
    {
        given.resize(std::min(given.find(separator), given.size()));
        std::ranges::replace(given, '.', separator);
    }
    char* stop = nullptr;
    const double value = std::strtod(given.c_str(), &stop);
    size = static_cast<std::size_t>(stop - given.c_str());
    return value;
}

} // namespace Vellum::Platform
