#include "Platform/ThreadLocale.h"

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>
#include <locale.h>

namespace Vellum::Platform
{

ThreadLocale EnterCLocale() noexcept
{
    // Made once and kept for the life of the process, like the C library's own C locale.
    static const locale_t cLocale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return cLocale == nullptr ? nullptr : static_cast<ThreadLocale>(::uselocale(cLocale));
}

void LeaveCLocale(ThreadLocale previous) noexcept
{
    if (previous != nullptr)
        ::uselocale(static_cast<locale_t>(previous));
}

bool UsesDecimalPoint() noexcept
{
    // Unlike localeconv, this gives the thread its own answer, and without filling a structure first.
    return std::strcmp(::nl_langinfo(RADIXCHAR), ".") == 0;
}

double ScanReal(const std::string& text, std::size_t& size)
{
    char* stop = nullptr;
    const double value = std::strtod(text.c_str(), &stop);
    size = static_cast<std::size_t>(stop - text.c_str());
    return value;
}

} // namespace Vellum::Platform
