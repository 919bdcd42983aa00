#include "Support/CpuTime.h"

#include <algorithm>
#include <ctime>

namespace Support
{

double GetCpuTime()
{
    std::timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double GetCpuTimeCost()
{
    static const double cost = []
    {
        double least = 1;
        for (int i = 0; i < 1000; ++i)
        {
            const double start = GetCpuTime();
            least = std::min(least, GetCpuTime() - start);
        }
        return least;
    }();
    return cost;
}

} // namespace Support
