#include "Support/System.h"

#include <algorithm>
#include <atomic>
#include <clocale>
#include <cstdlib>
#include <locale.h>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <windows.h>

namespace Support
{

void SetVariable(const char* name, const char* value) { ::_putenv_s(name, value == nullptr ? "" : value); }

const char* GetLocaleName(const char* name)
{
    const std::string_view asked = name;
    return asked == "de_DE.UTF-8" ? "German_Germany.1252" : asked == "pl_PL.ISO-8859-2" ? "Polish_Poland.1250" : name;
}

// The C++ library of some compilers knows no other locale than that of C.
void UseLocale(const char* name) { std::setlocale(LC_ALL, GetLocaleName(name)); }

std::filesystem::path MakeTempFolder()
{
    static std::atomic<int> count = 0;
    const std::string start = "VellumTest-" + std::to_string(::GetCurrentProcessId()) + "-";
    while (true)
    {
        const std::filesystem::path path = std::filesystem::temp_directory_path() / (start + std::to_string(++count));
        if (std::filesystem::create_directory(path))
            return path;
    }
}

std::ptrdiff_t CountOpenFiles()
{
    DWORD count = 0;
    ::GetProcessHandleCount(::GetCurrentProcess(), &count);
    return static_cast<std::ptrdiff_t>(count);
}

// The C libraries don't agree on what tells the size of an aligned block: it stands in front of it.
struct SBlock
{
    void* start;
    std::size_t size;
};

void* AllocateBlock(std::size_t size, std::size_t alignment)
{
    alignment = std::max(alignment, alignof(std::max_align_t));
    std::size_t room = size + alignment;
    void* const start = std::malloc(room + sizeof(SBlock));
    if (start == nullptr)
        return nullptr;
    void* block = static_cast<SBlock*>(start) + 1;
    block = std::align(alignment, size, block, room);
    static_cast<SBlock*>(block)[-1] = {start, size};
    return block;
}
void FreeBlock(void* block)
{
    if (block != nullptr)
        std::free(static_cast<SBlock*>(block)[-1].start);
}
std::size_t GetSizeOfBlock(void* block) { return block == nullptr ? 0 : static_cast<SBlock*>(block)[-1].size; }

HINSTANCE LoadModule(const char* file) { return ::LoadLibraryW(std::filesystem::path(file).c_str()); }
void UnloadModule(HINSTANCE module) { ::FreeLibrary(module); }

const bool ResourceTypesHaveCase = false;

std::uint32_t GetNumberOfThread() { return ::GetCurrentThreadId(); }

std::error_code ToSystemError(std::errc error)
{
    if (error == std::errc::no_such_file_or_directory)
        return {ERROR_PATH_NOT_FOUND, std::system_category()};
    return std::make_error_code(error);
}

bool ThreadsHaveLocales()
{
    const int before = ::_configthreadlocale(_ENABLE_PER_THREAD_LOCALE);
    return before != -1 && ::_configthreadlocale(before) != -1;
}

// That of the process, which the threads of tests share.
struct CThreadLocale::SLocales
{
    std::string own;
    std::string before;
};

CThreadLocale::CThreadLocale(const char* name) : locales(nullptr)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const char* const own = std::setlocale(LC_ALL, GetLocaleName(name));
    if (own == nullptr)
        throw std::runtime_error(std::string("no locale ") + name);
    locales = new SLocales{own, before};
}

CThreadLocale::~CThreadLocale()
{
    std::setlocale(LC_ALL, locales->before.c_str());
    delete locales;
}

bool CThreadLocale::IsInForce() const { return locales->own == std::setlocale(LC_ALL, nullptr); }

} // namespace Support
