#include "Platform/ConstantText.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <link.h>

namespace Vellum::Platform
{

namespace
{

// CConstants: the segments of the program that are mapped without the right to write. Those of libraries don't count:
// they may be unloaded, and others loaded in their place.
class CConstants
{
public:
    CConstants() noexcept { ::dl_iterate_phdr(&takeProgram, this); }

    bool Has(const char* text) const noexcept
    {
        const auto address = reinterpret_cast<std::uintptr_t>(text);
        for (const SSegment& segment : segments)
            if (address - segment.start < segment.size)
                return true;
        return false;
    }

private:
    struct SSegment
    {
        std::uintptr_t start;
        std::size_t size;
    };

    // The first module is the program.
    static int takeProgram(::dl_phdr_info* module, std::size_t, void* self) noexcept
    {
        auto* const constants = static_cast<CConstants*>(self);
        for (std::size_t index = 0; index < module->dlpi_phnum; ++index)
            constants->take(module->dlpi_addr, module->dlpi_phdr[index]);
        return 1;
    }

    void take(std::uintptr_t base, const ElfW(Phdr) & header) noexcept
    {
        if (header.p_type == PT_LOAD && (header.p_flags & PF_W) == 0 && count < segments.size())
            segments[count++] = {base + header.p_vaddr, header.p_filesz};
    }

    std::array<SSegment, 4> segments{};
    std::size_t count = 0;
};

} // namespace

bool IsConstant(const char* text) noexcept
{
    static const CConstants constants;
    return constants.Has(text);
}

} // namespace Vellum::Platform
