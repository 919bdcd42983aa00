#pragma once

#include <string>

#include "Platform/SystemTime.h"

namespace Vellum::Platform
{

// Names of weekdays and months in the language of the user's environment, whatever locale the program has set. On
// POSIX systems that is the first of LC_ALL, LC_TIME and LANG that is set and not empty. English, if the system doesn't
// have that language.

enum class EDateName
{
    Weekday, // in full
    Month,   // in full, as it stands alone and not in a date
    AbbreviatedMonth
};

enum class EDateNameResult
{
    Success,
    InvalidParameter, // no valid date in the years 1601 to 30827
    InsufficientBuffer,
    InvalidFlags,
    OtherFailure
};

// The name as UTF-16 units, whatever the character set of the user's locale. Of the date only year, month and day
// count: the weekday is computed from them, the time of day isn't looked at. `name` is changed on success only.
//
// The names of a language are kept once it has been asked for. May be called from all threads at once as long as none
// changes the environment. Raises nothing but a failed allocation.
EDateNameResult GetDateName(const SSystemTime& date, EDateName which, std::wstring& name);

} // namespace Vellum::Platform
