#include "Support/CDelays.h"

namespace Support
{

struct CDelays::SCalls
{
};

CDelays::CDelays(CTape&) {}
CDelays::~CDelays() = default;

} // namespace Support
