#include "Platform/Posix/UserLocale.h"

#include <cerrno>
#include <cstdlib>
#include <langinfo.h>
#include <locale.h>

namespace Vellum::Platform
{

const char* GetUserLocaleName(const char* category)
{
    for (const char* variable : {"LC_ALL", category, "LANG"})
        if (const char* name = std::getenv(variable); name != nullptr && *name != '\0')
            return name;
    return "C";
}

bool HasMemory() noexcept
{
    constexpr std::size_t Enough = 1 << 20;                             // for the code and the tables of a converter
    void* volatile const memory = ::operator new(Enough, std::nothrow); // volatile: compilers drop what isn't used
    ::operator delete(memory);
    return memory != nullptr;
}

void RequireMemory()
{
    if (!HasMemory())
        throw std::bad_alloc();
}

CLocale::CLocale(int categories, const char* name)
{
    RequireMemory();
    errno = 0;
    handle = ::newlocale(categories, name, nullptr);
    if (IsOpen())
        return;
    const bool wasShort = errno == ENOMEM || !HasMemory();
    handle = ::newlocale(categories, name, nullptr);
    isInDoubt = wasShort && !IsOpen();
}

CLocale::~CLocale()
{
    if (IsOpen())
        ::freelocale(static_cast<locale_t>(handle));
}

const char* CLocale::GetInfo(int item) const noexcept { return ::nl_langinfo_l(item, static_cast<locale_t>(handle)); }

} // namespace Vellum::Platform
