#include "Platform/ModuleResource.h"

#include <cstdint>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <string>

namespace Vellum::Platform
{

namespace
{

// CMake/VellumAddResource.cmake makes the symbols: an exported object of constant data, in the byte order of the
// machine.
//
// resource := size byte*        the size is as wide as an address
constexpr const char* SymbolPrefix = "vellum_resource_";

bool IsSymbolCharacter(wchar_t character)
{
    return (character >= L'A' && character <= L'Z') || (character >= L'a' && character <= L'z') ||
           (character >= L'0' && character <= L'9') || character == L'_';
}

// Empty for a type that no resource can have.
std::string MakeSymbolName(int id, std::wstring_view type)
{
    std::string name = SymbolPrefix + std::to_string(static_cast<std::uint16_t>(id)) + '_';
    for (const wchar_t character : type)
    {
        if (!IsSymbolCharacter(character))
            return {};
        name += static_cast<char>(character);
    }
    return name;
}

// A lookup also goes through the libraries that the module uses; this tells what it found there from its own, by where
// the system has loaded it.
bool IsSymbolOf(void* module, const void* symbol)
{
    ::link_map* loaded = nullptr;
    ::Dl_info ofModule, ofSymbol;
    return ::dlinfo(module, RTLD_DI_LINKMAP, &loaded) == 0 && ::dladdr(loaded->l_ld, &ofModule) != 0 &&
           ::dladdr(symbol, &ofSymbol) != 0 && ofModule.dli_fbase == ofSymbol.dli_fbase;
}

const unsigned char* FindSymbol(void* module, const char* name)
{
    const void* const symbol = module == nullptr ? nullptr : ::dlsym(module, name);
    return symbol != nullptr && IsSymbolOf(module, symbol) ? static_cast<const unsigned char*>(symbol) : nullptr;
}

} // namespace

std::optional<std::span<const unsigned char>> FindModuleResource(HINSTANCE module, int id, std::wstring_view type)
{
    const std::string name = MakeSymbolName(id, type);
    if (name.empty())
        return std::nullopt;
    void* const program = module == nullptr ? ::dlopen(nullptr, RTLD_LAZY) : nullptr;
    const unsigned char* const resource = FindSymbol(module == nullptr ? program : module, name.c_str());
    if (program != nullptr)
        ::dlclose(program);
    if (resource == nullptr)
        return std::nullopt;
    std::size_t size;
    std::memcpy(&size, resource, sizeof size);
    return std::span(resource + sizeof size, size);
}

} // namespace Vellum::Platform
