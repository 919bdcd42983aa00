#pragma once

#include <chrono>

// Time since it was made.
class CStopwatch
{
public:
    double GetMilliseconds() const
    {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    }

private:
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};
