#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

// CProgress: tells what the program is busy with for as long as the object lives, in one line of standard error, once
// that has taken more than a second. Nothing is told where standard error is no terminal.
class CProgress
{
public:
    // `total` is what Advance counts up to, or 0 if nobody knows.
    explicit CProgress(std::string activity, std::uint64_t total = 0);
    CProgress(const CProgress&) = delete;
    CProgress& operator=(const CProgress&) = delete;
    ~CProgress(); // takes the line away

    void Advance(std::uint64_t count) noexcept { done.store(count, std::memory_order_relaxed); }

private:
    void tell();

    const std::string activity;
    const std::uint64_t total;
    std::atomic<std::uint64_t> done = 0;
    std::mutex mutex;
    std::condition_variable ending;
    bool isEnding = false;
    std::thread teller;
};
