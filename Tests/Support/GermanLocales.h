#pragma once

#include "Support/System.h"

namespace Support
{

// A thread whose locale has a decimal comma and grouped digits ...
struct CGermanThread : CThreadLocale
{
    CGermanThread() : CThreadLocale("de_DE.UTF-8") {}
};

// ... and that of C.
struct CCThread : CThreadLocale
{
    CCThread() : CThreadLocale("C") {}
};

} // namespace Support
