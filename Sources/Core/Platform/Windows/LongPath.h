#pragma once

#include <string>

namespace Vellum::Platform
{

// A file name as the system's services take it. Without a prefix they know only names of some 250 characters, and of
// folders even fewer; so one that is longer is made absolute and gets it. Any other is left as it is: with the prefix,
// "." and "/" would be names like all others. Only a failed allocation is raised.
std::wstring ToSystemName(const std::wstring& name);

} // namespace Vellum::Platform
