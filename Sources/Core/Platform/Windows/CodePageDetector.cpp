#include "Platform/CodePageDetector.h"

#include <array>
#include <limits>
#include <memory>
#include <mlang.h>
#include <objbase.h>
#include <windows.h>

namespace Vellum::Platform
{

namespace
{

constexpr CLSID MultiLanguage = {0x275C23E2, 0x3747, 0x11D0, {0x9F, 0xEA, 0x00, 0xAA, 0x00, 0x3F, 0x86, 0x46}};
constexpr IID MultiLanguage2 = {0xDCCFC164, 0x2B38, 0x11D2, {0xB7, 0xEC, 0x00, 0xC0, 0x4F, 0x8F, 0x5D, 0x9A}};

// The component system for the calling thread. It is left in any case, also where the thread was set up in another way
// before, which entering it doesn't change.
class CComponents
{
public:
    CComponents() noexcept { static_cast<void>(::CoInitialize(nullptr)); }
    ~CComponents() { ::CoUninitialize(); }
    CComponents(const CComponents&) = delete;
    CComponents& operator=(const CComponents&) = delete;
};

struct SRelease
{
    void operator()(IMultiLanguage2* service) const noexcept { service->Release(); }
};
using Service = std::unique_ptr<IMultiLanguage2, SRelease>;

Service FindService() noexcept
{
    void* service = nullptr;
    const HRESULT result = ::CoCreateInstance(MultiLanguage, nullptr, CLSCTX_ALL, MultiLanguage2, &service);
    return Service(SUCCEEDED(result) ? static_cast<IMultiLanguage2*>(service) : nullptr);
}

} // namespace

// The service of the system that tells the encoding of web pages. It gives the likeliest answer first.
unsigned int DetectCodePage(std::span<const unsigned char> text)
{
    const CComponents scope;
    const Service service = FindService();
    if (service == nullptr)
        return 0;
    constexpr std::size_t Most = std::numeric_limits<INT>::max(); // of a longer text the beginning has to do
    INT size = static_cast<INT>(text.size() < Most ? text.size() : Most);
    std::array<DetectEncodingInfo, 1000> answers{};
    INT count = static_cast<INT>(answers.size());
    char* const bytes = reinterpret_cast<char*>(const_cast<unsigned char*>(text.data())); // which are only read
    const HRESULT result = service->DetectInputCodepage(0, 0, bytes, &size, answers.data(), &count);
    return result == S_OK && count > 0 ? answers.front().nCodePage : 0;
}

} // namespace Vellum::Platform
