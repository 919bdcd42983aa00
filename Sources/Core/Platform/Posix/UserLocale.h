#pragma once

#include <atomic>
#include <memory>
#include <new>
#include <optional>
#include <string>

namespace Vellum::Platform
{

// The locale that the user's environment names for a category, "LC_CTYPE" for instance: the same precedence as
// setlocale, but of the environment alone. Good until that is changed.
const char* GetUserLocaleName(const char* category);

// The C library takes an allocation that failed inside for a locale or a converter that it doesn't have. So whoever is
// told that it has none makes sure that there is memory, and asks again.
bool HasMemory() noexcept;
void RequireMemory(); // raises std::bad_alloc

// CLocale: one of the system's locales, without being put in force.
class CLocale
{
public:
    // `categories` is a mask of the system. Raises std::bad_alloc if memory is short from the start.
    CLocale(int categories, const char* name);
    ~CLocale();
    CLocale(const CLocale&) = delete;
    CLocale& operator=(const CLocale&) = delete;

    bool IsOpen() const noexcept { return handle != nullptr; }

    // It isn't open, but for want of memory. The C library, once it has failed so, may never find this locale again.
    bool IsInDoubt() const noexcept { return isInDoubt; }

    // As nl_langinfo gives it.
    const char* GetInfo(int item) const noexcept;

private:
    void* handle; // the system's
    bool isInDoubt = false;
};

// CByLocale: what has been made of each locale that was asked for, kept for the life of the process in a list that only
// grows at its head: readers need no lock. Opening a locale reads files, and glibc never frees what it makes of LOCPATH
// then. Nothing here belongs to a thread: without memory the destructor of such an object can't be registered, which
// ends the process.
template <class Value>
class CByLocale
{
public:
    // `make` is called with the name when the locale is new here. It gives nothing if the locale is in doubt, and this
    // raises std::bad_alloc then, from now on. Two threads that come first at the same time both add theirs, which does
    // no harm.
    template <class Make>
    const Value& Get(const char* localeName, const Make& make)
    {
        const SEntry& entry = findOrMake(localeName, make);
        if (!entry.value)
            throw std::bad_alloc();
        return *entry.value;
    }

private:
    struct SEntry
    {
        std::string localeName;
        std::optional<Value> value;
        const SEntry* next;
    };

    template <class Make>
    const SEntry& findOrMake(const char* localeName, const Make& make)
    {
        for (const SEntry* each = first.load(std::memory_order_acquire); each != nullptr; each = each->next)
            if (each->localeName == localeName)
                return *each;

        auto entry = std::make_unique<SEntry>(SEntry{localeName, std::nullopt, nullptr});
        entry->value = make(localeName);
        entry->next = first.load(std::memory_order_relaxed);
        while (!first.compare_exchange_weak(entry->next, entry.get(), std::memory_order_acq_rel))
            ;
        return *entry.release();
    }

    std::atomic<const SEntry*> first = nullptr;
};

} // namespace Vellum::Platform
