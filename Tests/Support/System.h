#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

#include "Platform/ModuleHandle.h"

// What tests need of the system. Each has its own source, in the folder that is named after it.
namespace Support
{

// A variable of the process's environment; null removes it.
void SetVariable(const char* name, const char* value);

// What the C library calls the locale that is named so on POSIX systems.
const char* GetLocaleName(const char* name);

// Puts a locale in force for the whole program.
void UseLocale(const char* name);

// A new folder that nobody else has.
std::filesystem::path MakeTempFolder();

// How many files this process has open.
std::ptrdiff_t CountOpenFiles();

// Blocks of the C library's heap.
void* AllocateBlock(std::size_t size, std::size_t alignment);
void FreeBlock(void* block);
std::size_t GetSizeOfBlock(void* block);

// Null if it can't be had.
HINSTANCE LoadModule(const char* file);
void UnloadModule(HINSTANCE module);

// Whether the types of resources tell capitals from small letters.
extern const bool ResourceTypesHaveCase;

// Whether what runs the tests has no converter for a code page that the system itself has.
bool LacksCodePage(unsigned int codePage);

// The number that the system's own function gives the calling thread.
std::uint32_t GetNumberOfThread();

// As the system tells it to whoever opens a file.
std::error_code ToSystemError(std::errc error);

// Whether the C library has a locale for each thread, so that clients run in the one of C.
bool ThreadsHaveLocales();

// Puts a locale in force for the calling thread for as long as this lives: "de_DE.UTF-8" or "C".
class CThreadLocale
{
public:
    explicit CThreadLocale(const char* name);
    ~CThreadLocale();
    CThreadLocale(const CThreadLocale&) = delete;
    CThreadLocale& operator=(const CThreadLocale&) = delete;

    bool IsInForce() const;

private:
    struct SLocales;
    SLocales* locales;
};

} // namespace Support
