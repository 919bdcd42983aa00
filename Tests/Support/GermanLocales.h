#pragma once

#include <locale.h>
#include <stdexcept>
#include <string>

namespace Support
{

// A locale is in force for the calling thread, for as long as this lives.
class CThreadLocale
{
public:
    explicit CThreadLocale(const char* name) : locale(::newlocale(LC_ALL_MASK, name, nullptr))
    {
        if (locale == nullptr)
            throw std::runtime_error(std::string("no locale ") + name + ": ctest tells where it is, by LOCPATH");
        before = ::uselocale(locale);
    }
    ~CThreadLocale()
    {
        ::uselocale(before);
        ::freelocale(locale);
    }
    CThreadLocale(const CThreadLocale&) = delete;
    CThreadLocale& operator=(const CThreadLocale&) = delete;

    bool IsInForce() const { return ::uselocale(nullptr) == locale; }

private:
    locale_t locale;
    locale_t before{};
};

// ... one with decimal comma and grouped digits ...
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
