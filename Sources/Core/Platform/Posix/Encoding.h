#pragma once

#include <string>
#include <string_view>

namespace Vellum::Platform
{

// As AppendFromCodePage, for an encoding that has one of the system's names. An empty name is refused.
bool AppendFromEncoding(std::wstring& text, std::string_view bytes, const char* encoding);

} // namespace Vellum::Platform
