#pragma once

#include <memory>

#include "Support/CTape.h"

namespace Support
{

// CDelays: for as long as it lives, the calling thread's reads and writes are interrupted, and move less than they
// could, as the tape has it. Where tests can't come between the library and the system they are as they are.
class CDelays
{
public:
    explicit CDelays(CTape& tape);
    ~CDelays();
    CDelays(const CDelays&) = delete;
    CDelays& operator=(const CDelays&) = delete;

private:
    struct SCalls;
    std::unique_ptr<SCalls> calls;
};

} // namespace Support
