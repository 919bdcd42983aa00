#include "Platform/ThreadLocale.h"

#include <clocale>
#include <locale.h>

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
