#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace Measured
{

// One benchmark. Its name is format/operation/count/peer, as in "Json/OrdersRead/1000/RapidJSON DOM": all but the peer
// is its lane, in which peers are compared.
struct SBenchmark
{
    std::string format;
    std::string operation;
    std::uint32_t count;
    std::string peer;
    std::function<void(benchmark::State&)> run;

    std::string GetLane() const { return format + '/' + operation + '/' + std::to_string(count); }
};

// All that peers have to offer; they add to it before main begins.
std::vector<SBenchmark>& GetBenchmarks();

// With cold memory, the free memory of the process is given back to the system before each run, so that page faults
// are part of the time, as in a program that writes one document and ends. Otherwise they are kept out of it.
bool IsMemoryCold();

} // namespace Measured
