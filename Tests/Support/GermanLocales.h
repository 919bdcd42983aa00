#pragma once

#include <locale.h>
#include <locale>
#include <stdexcept>

namespace Support
{

// A locale with decimal comma and grouped digits is in force for the calling thread, for as long as this lives.
class CGermanThread
{
public:
    CGermanThread() = default;
    ~CGermanThread()
    {
        ::uselocale(before);
        ::freelocale(german);
    }
    CGermanThread(const CGermanThread&) = delete;
    CGermanThread& operator=(const CGermanThread&) = delete;

    bool IsInForce() const { return ::uselocale(nullptr) == german; }

private:
    static locale_t make()
    {
        const locale_t made = ::newlocale(LC_ALL_MASK, "de_DE.UTF-8", nullptr);
        if (made == nullptr)
            throw std::runtime_error("no locale de_DE.UTF-8: ctest tells where it is, by LOCPATH");
        return made;
    }

    locale_t german = make();
    locale_t before = ::uselocale(german);
};

// The same for the C++ library and for the process.
class CGermanProcess
{
public:
    CGermanProcess() = default;
    ~CGermanProcess() { std::locale::global(before); }
    CGermanProcess(const CGermanProcess&) = delete;
    CGermanProcess& operator=(const CGermanProcess&) = delete;

private:
    std::locale before = std::locale::global(std::locale("de_DE.UTF-8"));
};

} // namespace Support
