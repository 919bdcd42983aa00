#include "CProgress.h"

#include <chrono>
#include <iostream>
#include <utility>

#include "Platform/Terminal.h"

CProgress::CProgress(std::string activity, std::uint64_t total) : activity(std::move(activity)), total(total)
{
    if (Vellum::Platform::IsTerminal(Vellum::Platform::EOutput::Error))
        teller = std::thread([this] { tell(); });
}

CProgress::~CProgress()
{
    if (!teller.joinable())
        return;
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
    }
    ending.notify_one();
    teller.join();
}

void CProgress::tell()
{
    const auto start = std::chrono::steady_clock::now();
    bool hasLine = false;
    std::unique_lock lock(mutex);
    while (!ending.wait_for(lock, std::chrono::milliseconds(hasLine ? 250 : 1000), [this] { return isEnding; }))
    {
        const auto seconds = std::chrono::floor<std::chrono::seconds>(std::chrono::steady_clock::now() - start);
        std::cerr << "\rvellum: " << activity << ", " << seconds.count() << " s";
        if (total != 0)
            std::cerr << ", " << done.load(std::memory_order_relaxed) * 100 / total << " %";
        std::cerr << "\x1B[K" << std::flush;
        hasLine = true;
    }
    if (hasLine)
        std::cerr << "\r\x1B[K" << std::flush;
}
