#include "Platform/Posix/Descriptor.h"

#include <algorithm>
#include <csignal>
#include <ctime>
#include <unistd.h>

#include "Platform/ForcedUnwind.h"

namespace Vellum::Platform
{

namespace
{

// Holds back the signals by which a failed write would end the process.
class CWriteSignals
{
public:
    CWriteSignals() noexcept
    {
        ::sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGXFSZ);
        sigaddset(&signals, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &signals, &before);
    }
    ~CWriteSignals() { ::pthread_sigmask(SIG_SETMASK, &before, nullptr); }
    CWriteSignals(const CWriteSignals&) = delete;
    CWriteSignals& operator=(const CWriteSignals&) = delete;

    // Takes away the signal that came with the error of a write, unless the thread had it held back itself.
    void TakeAway(int error) const noexcept
    {
        const int signal = error == EFBIG ? SIGXFSZ : SIGPIPE;
        if ((error != EFBIG && error != EPIPE) || sigismember(&before, signal) == 1)
            return;
        ::sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, signal);
        const ::timespec noTime{};
        Resume([&] { return ::sigtimedwait(&signals, nullptr, &noTime); });
    }

private:
    ::sigset_t before;
};

bool WriteAll(int descriptor, const unsigned char* from, std::size_t count) noexcept
{
    while (count > 0)
    {
        const ::ssize_t moved = Resume([&] { return ::write(descriptor, from, std::min(count, MostAtOnce)); });
        if (moved <= 0)
            return false;
        from += moved;
        count -= static_cast<std::size_t>(moved);
    }
    return true;
}

} // namespace

bool WriteToDescriptor(int descriptor, const void* data, std::size_t count) noexcept
{
    const CNoCancellation scope;
    const CWriteSignals signals;
    if (WriteAll(descriptor, static_cast<const unsigned char*>(data), count))
        return true;
    signals.TakeAway(errno);
    return false;
}

} // namespace Vellum::Platform
