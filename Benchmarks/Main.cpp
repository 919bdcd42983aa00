// Vellum and widely used libraries at the same work: see Workload.h for what it is, Support/Measure.h for how it is
// measured. Scripts/Benchmark.sh runs all of it and writes Docs/Performance.md. By hand:
//
//   VellumBenchmarks --benchmark_filter='Json/OrdersRead/1000/'   one lane
//   VellumBenchmarks --benchmark_filter='/Vellum$'                one peer
//   VellumBenchmarks --cold                                       with the page faults of memory that is new

#include <algorithm>
#include <malloc.h>
#include <string_view>
#include <tuple>

#include <benchmark/benchmark.h>

#include "Support/Lanes.h"

namespace Measured
{

namespace
{

bool memoryCold = false;

// Memory that was used once stays with the process, large blocks too.
void KeepMemory()
{
    ::mallopt(M_MMAP_MAX, 0);
    ::mallopt(M_TRIM_THRESHOLD, -1);
}

// Lane by lane, in each Vellum and then the others by name, so that what changes while a program runs hits those alike
// that are compared.
void SortBenchmarks()
{
    const auto rank = [](const SBenchmark& benchmark)
    {
        return std::tuple(benchmark.format, benchmark.operation, benchmark.count, benchmark.peer != "Vellum",
                          benchmark.peer);
    };
    std::sort(GetBenchmarks().begin(), GetBenchmarks().end(),
              [&](const SBenchmark& left, const SBenchmark& right) { return rank(left) < rank(right); });
}

void RegisterBenchmarks()
{
    for (const SBenchmark& benchmark : GetBenchmarks())
        benchmark::RegisterBenchmark((benchmark.GetLane() + '/' + benchmark.peer).c_str(), benchmark.run)
            ->UseManualTime();
}

// Takes --cold out of the arguments.
void TakeOwnArguments(int& count, char** arguments)
{
    char** const end = std::remove_if(arguments + 1, arguments + count,
                                      [](std::string_view argument) { return argument == "--cold"; });
    if (end != arguments + count)
        memoryCold = true;
    count = static_cast<int>(end - arguments);
}

} // namespace

std::vector<SBenchmark>& GetBenchmarks()
{
    static std::vector<SBenchmark> benchmarks;
    return benchmarks;
}

bool IsMemoryCold() { return memoryCold; }

} // namespace Measured

int main(int count, char** arguments)
{
    Measured::TakeOwnArguments(count, arguments);
    if (!Measured::IsMemoryCold())
        Measured::KeepMemory();
    Measured::SortBenchmarks();
    Measured::RegisterBenchmarks();
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
