#include "Platform/ConstantText.h"

namespace Vellum::Platform
{

bool IsConstant(const char*) noexcept { return false; }

} // namespace Vellum::Platform
