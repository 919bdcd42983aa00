#include "Support/System.h"

#include <cstdlib>
#include <dlfcn.h>
#include <iterator>
#include <locale.h>
#include <locale>
#include <malloc.h>
#include <memory>
#include <stdexcept>
#include <stdlib.h>
#include <unistd.h>

namespace Support
{

void SetVariable(const char* name, const char* value)
{
    if (value == nullptr)
        ::unsetenv(name);
    else
        ::setenv(name, value, 1);
}

const char* GetLocaleName(const char* name) { return name; }
void UseLocale(const char* name) { std::locale::global(std::locale(name)); } // the C library's as well

std::filesystem::path MakeTempFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "VellumTest-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    return name;
}

std::ptrdiff_t CountOpenFiles() { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); }

void* AllocateBlock(std::size_t size, std::size_t alignment)
{
    return alignment <= alignof(std::max_align_t)
               ? std::malloc(size == 0 ? 1 : size)
               : std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}
void FreeBlock(void* block) { std::free(block); }
std::size_t GetSizeOfBlock(void* block) { return ::malloc_usable_size(block); }

HINSTANCE LoadModule(const char* file)
{
    return static_cast<HINSTANCE>(::dlopen(file, RTLD_NOW | RTLD_GLOBAL)); // seen by a lookup in the program, too
}
void UnloadModule(HINSTANCE module) { ::dlclose(module); }

const bool ResourceTypesHaveCase = true;

bool LacksCodePage(unsigned int) { return false; }

std::uint32_t GetNumberOfThread() { return static_cast<std::uint32_t>(::gettid()); }

std::error_code ToSystemError(std::errc error) { return {static_cast<int>(error), std::system_category()}; }

bool ThreadsHaveLocales() { return true; }

struct CThreadLocale::SLocales
{
    locale_t own;
    locale_t before;
};

CThreadLocale::CThreadLocale(const char* name) : locales(nullptr)
{
    auto made = std::make_unique<SLocales>(); // memory may be short on purpose
    made->own = ::newlocale(LC_ALL_MASK, name, nullptr);
    if (made->own == nullptr)
        throw std::runtime_error(std::string("no locale ") + name + ": ctest tells where it is, by LOCPATH");
    made->before = ::uselocale(made->own);
    locales = made.release();
}

CThreadLocale::~CThreadLocale()
{
    ::uselocale(locales->before);
    ::freelocale(locales->own);
    delete locales;
}

bool CThreadLocale::IsInForce() const { return ::uselocale(nullptr) == locales->own; }

} // namespace Support
