#include "Support/CDelays.h"

#include <cerrno>

#include "Support/Posix/CSystemCalls.h"

namespace Support
{

namespace
{

CSystemCalls::Fates AnyDelays(CTape& tape)
{
    CSystemCalls::Fates fates;
    for (std::size_t count = tape.Below(50); count > 0; --count)
        tape.OneIn(4) ? fates.push_back({EINTR}) : fates.push_back({0, 1 + tape.Below(255)});
    return fates;
}

} // namespace

struct CDelays::SCalls
{
    CSystemCalls calls;
};

CDelays::CDelays(CTape& tape) : calls(std::make_unique<SCalls>())
{
    for (const CSystemCalls::ECall call : {CSystemCalls::Open, CSystemCalls::Lock, CSystemCalls::Truncate})
        calls->calls.fates[call].assign(tape.Below(3), {EINTR});
    calls->calls.fates[CSystemCalls::Write] = AnyDelays(tape);
    calls->calls.fates[CSystemCalls::Read] = AnyDelays(tape);
}
CDelays::~CDelays() = default;

} // namespace Support
