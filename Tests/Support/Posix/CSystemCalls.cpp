#include "Support/Posix/CSystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <iconv.h>
#include <locale.h>
#include <sys/stat.h>
#include <sys/types.h>

namespace
{

using Support::CSystemCalls;

thread_local CSystemCalls* current = nullptr;

CSystemCalls::SFate Next(CSystemCalls::ECall call)
{
    if (current == nullptr)
        return {};
    ++current->made[call];
    CSystemCalls::Fates& fates = current->fates[call];
    if (fates.empty())
        return {};
    const CSystemCalls::SFate fate = fates.front();
    fates.pop_front();
    return fate;
}

// The result of `real`, or the failure that is its fate.
template <class Result, class Real>
Result Meet(CSystemCalls::ECall call, Result failure, const Real& real)
{
    const int error = Next(call).error;
    if (error == 0)
        return real();
    errno = error;
    return failure;
}

template <class Real>
ssize_t Move(CSystemCalls::ECall call, std::size_t count, const Real& real)
{
    if (current != nullptr)
        current->mostAsked = std::max(current->mostAsked, count);
    const CSystemCalls::SFate fate = Next(call);
    if (fate.error == 0)
        return real(std::min(count, fate.most));
    errno = fate.error;
    return -1;
}

} // namespace

// The linker's option --wrap has these called in place of the system's functions, which have the other names.
extern "C"
{
    int __real_open64(const char* path, int flags, ...);
    int __real_fcntl64(int descriptor, int command, ...);
    int __real_fstat64(int descriptor, struct stat64* status);
    int __real_flock(int descriptor, int operation);
    int __real_ftruncate64(int descriptor, off64_t size);
    ssize_t __real_read(int descriptor, void* data, std::size_t count);
    ssize_t __real_pread64(int descriptor, void* data, std::size_t count, off64_t at);
    ssize_t __real_write(int descriptor, const void* data, std::size_t count);
    int __real_close(int descriptor);
    locale_t __real_newlocale(int categories, const char* name, locale_t base);
    iconv_t __real_iconv_open(const char* to, const char* from);

    int __wrap_open64(const char* path, int flags, ...)
    {
        std::va_list arguments;
        va_start(arguments, flags);
        const auto mode = static_cast<mode_t>(va_arg(arguments, int));
        va_end(arguments);
        if (current != nullptr)
            current->openFlags = flags;
        return Meet(CSystemCalls::Open, -1, [=] { return __real_open64(path, flags, mode); });
    }
    int __wrap_fcntl64(int descriptor, int command, ...)
    {
        std::va_list arguments;
        va_start(arguments, command);
        const int argument = va_arg(arguments, int);
        va_end(arguments);
        return Meet(CSystemCalls::Settings, -1, [=] { return __real_fcntl64(descriptor, command, argument); });
    }
    int __wrap_fstat64(int descriptor, struct stat64* status)
    {
        return Meet(CSystemCalls::Status, -1, [=] { return __real_fstat64(descriptor, status); });
    }
    int __wrap_flock(int descriptor, int operation)
    {
        return Meet(CSystemCalls::Lock, -1, [=] { return __real_flock(descriptor, operation); });
    }
    int __wrap_ftruncate64(int descriptor, off64_t size)
    {
        return Meet(CSystemCalls::Truncate, -1, [=] { return __real_ftruncate64(descriptor, size); });
    }
    ssize_t __wrap_read(int descriptor, void* data, std::size_t count)
    {
        return Move(CSystemCalls::Read, count, [=](std::size_t few) { return __real_read(descriptor, data, few); });
    }
    ssize_t __wrap_pread64(int descriptor, void* data, std::size_t count, off64_t at)
    {
        return Move(CSystemCalls::ReadAt, count,
                    [=](std::size_t few) { return __real_pread64(descriptor, data, few, at); });
    }
    ssize_t __wrap_write(int descriptor, const void* data, std::size_t count)
    {
        return Move(CSystemCalls::Write, count, [=](std::size_t few) { return __real_write(descriptor, data, few); });
    }
    int __wrap_close(int descriptor)
    {
        const int result = __real_close(descriptor);
        return Meet(CSystemCalls::Close, -1, [=] { return result; });
    }
    locale_t __wrap_newlocale(int categories, const char* name, locale_t base)
    {
        return Meet(CSystemCalls::OpenLocale, locale_t{}, [=] { return __real_newlocale(categories, name, base); });
    }
    iconv_t __wrap_iconv_open(const char* to, const char* from)
    {
        return Meet(CSystemCalls::OpenConverter, reinterpret_cast<iconv_t>(-1),
                    [=] { return __real_iconv_open(to, from); });
    }
}

namespace Support
{

CSystemCalls::CSystemCalls() { current = this; }
CSystemCalls::~CSystemCalls() { current = nullptr; }

} // namespace Support
