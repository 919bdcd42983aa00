#pragma once

#include "Platform/ThreadLocale.h"

namespace Vellum
{

// CLocaleScope: for as long as it lives, the calling thread is in the C locale, so that numbers are printed and
// scanned with a point. The destructor gives the thread exactly the locale back that it had.
//
// Threads  Made and destroyed on one thread; others keep their locale throughout. Scopes nest.
class CLocaleScope
{
public:
    CLocaleScope() noexcept : previous(Platform::EnterCLocale()) {}
    ~CLocaleScope() { Platform::LeaveCLocale(previous); }

    CLocaleScope(const CLocaleScope&) = delete;
    CLocaleScope& operator=(const CLocaleScope&) = delete;

private:
    Platform::ThreadLocale previous;
};

} // namespace Vellum
