#pragma once

#include <algorithm>
#include <malloc.h>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "Support/CpuTime.h"
#include "Support/Lanes.h"
#include "Support/PeakMemory.h"
#include "Workload.h"

// How a peer is measured. A peer is a structure with
//
//   Format, Name     the lane and the name in it; ReadName in its place where reading is done in another way
//   Write(objects)   gives a document, of whatever type the peer likes; one function for each workload that it serves
//   Read(document, objects)   fills new objects
//   GetSpoilable(document)    where Read changes what it reads: makes what it gets, anew for each run
//   MakeDocument(objects)     what a peer reads that can't write
//
// What is timed is Write until it has returned the document, and Read with the making of the objects. Giving documents
// and objects back isn't timed.
namespace Measured
{

template <class Peer, class Objects>
concept CanWrite = requires(const Objects& objects)
{
    Peer::Write(objects);
};

template <class Peer, class Objects>
auto MakeDocument(const Objects& objects)
{
    if constexpr (CanWrite<Peer, Objects>)
        return Peer::Write(objects);
    else
        return Peer::MakeDocument(objects);
}

template <class Peer, class Objects>
concept HasDocument = CanWrite<Peer, Objects> || requires(const Objects& objects)
{
    Peer::MakeDocument(objects);
};

template <class Peer, class Objects>
using Document = decltype(MakeDocument<Peer>(std::declval<const Objects&>()));

template <class Peer, class Objects>
concept KeepsDocument = requires(const Document<Peer, Objects>& document, Objects& objects)
{
    Peer::Read(document, objects);
};

template <class Peer, class Objects>
concept SpoilsDocument = requires(const Document<Peer, Objects>& document, Objects& objects)
{
    Peer::Read(*std::make_unique<decltype(Peer::GetSpoilable(document))>(), objects);
};

template <class Peer, class Objects>
concept CanRead = HasDocument<Peer, Objects> &&(KeepsDocument<Peer, Objects> || SpoilsDocument<Peer, Objects>);

template <class Peer, class Objects>
Objects ReadObjects(auto& document)
{
    Objects objects;
    Peer::Read(document, objects);
    return objects;
}

// The document itself, or what the peer may spoil in its place.
template <class Peer, class Objects>
decltype(auto) GetReadable(const Document<Peer, Objects>& document)
{
    if constexpr (KeepsDocument<Peer, Objects>)
        return (document);
    else
        return Peer::GetSpoilable(document);
}

double GetSize(const auto& document)
{
    if constexpr (requires { document.size(); })
        return static_cast<double>(document.size());
    else
        return static_cast<double>(document.GetSize());
}

// One set of objects at a time: peers of a lane follow one another.
template <class Objects>
const Objects& GetObjects(std::uint32_t count)
{
    static std::uint32_t madeCount = 0;
    static std::optional<Objects> objects;
    if (madeCount != count)
        objects.emplace(SWorkload<Objects>::Make(count));
    madeCount = count;
    return *objects;
}

// What is the same in each run: bytes of the document, and of the heap at its peak.
struct SFigures
{
    double document = 0;
    double peak = 0;
};

template <class Objects>
void ExpectEqual(const Objects& read, const Objects& objects)
{
    if (!(read == objects))
        throw std::runtime_error("the document doesn't give equal objects back");
}

template <class Peer, class Objects>
SFigures ProveWrite(const Objects& objects)
{
    Support::StartPeakMemory();
    const auto document = Peer::Write(objects);
    const std::int64_t peak = Support::StopPeakMemory();
    auto&& readable = GetReadable<Peer, Objects>(document);
    ExpectEqual(ReadObjects<Peer, Objects>(readable), objects);
    return {GetSize(document), static_cast<double>(peak)};
}

template <class Peer, class Objects>
SFigures ProveRead(const Objects& objects)
{
    const auto document = MakeDocument<Peer>(objects);
    auto&& readable = GetReadable<Peer, Objects>(document);
    Support::StartPeakMemory();
    const Objects read = ReadObjects<Peer, Objects>(readable);
    const std::int64_t peak = Support::StopPeakMemory();
    ExpectEqual(read, objects);
    return {GetSize(document), static_cast<double>(peak)};
}

void TimeOne(benchmark::State& state, const auto& operation)
{
    if (IsMemoryCold())
        ::malloc_trim(0);
    const double start = Support::GetCpuTime();
    const auto result = operation();
    const double end = Support::GetCpuTime();
    benchmark::DoNotOptimize(&result);
    state.SetIterationTime(std::max(end - start - Support::GetCpuTimeCost(), 1e-9));
}

inline void Report(benchmark::State& state, const SFigures& figures, std::uint32_t count)
{
    state.counters["items"] = count;
    state.counters["document"] = figures.document;
    state.counters["peak"] = figures.peak;
}

template <class Peer, class Objects>
void MeasureWrite(benchmark::State& state, std::optional<SFigures>& figures, std::uint32_t count)
{
    const Objects& objects = GetObjects<Objects>(count);
    if (!figures)
        figures = ProveWrite<Peer>(objects);
    for ([[maybe_unused]] auto iteration : state)
        TimeOne(state, [&] { return Peer::Write(objects); });
    Report(state, *figures, count);
}

template <class Peer, class Objects>
void MeasureRead(benchmark::State& state, std::optional<SFigures>& figures, std::uint32_t count)
{
    const Objects& objects = GetObjects<Objects>(count);
    if (!figures)
        figures = ProveRead<Peer>(objects);
    const auto document = MakeDocument<Peer>(objects);
    for ([[maybe_unused]] auto iteration : state)
    {
        auto&& readable = GetReadable<Peer, Objects>(document);
        TimeOne(state, [&] { return ReadObjects<Peer, Objects>(readable); });
    }
    Report(state, *figures, count);
}

using Measurement = void (*)(benchmark::State&, std::optional<SFigures>&, std::uint32_t);

inline void AddBenchmark(SBenchmark benchmark, Measurement measure)
{
    benchmark.run = [measure, count = benchmark.count, figures = std::optional<SFigures>()](auto& state) mutable
    {
        try
        {
            measure(state, figures, count);
        }
        catch (const std::exception& exception)
        {
            state.SkipWithError(exception.what());
        }
    };
    GetBenchmarks().push_back(std::move(benchmark));
}

template <class Peer>
const char* GetReadName()
{
    if constexpr (requires { Peer::ReadName; })
        return Peer::ReadName;
    else
        return Peer::Name;
}

template <class Peer, class Objects>
void AddLanes()
{
    using Workload = SWorkload<Objects>;
    const std::string name = Workload::Name;
    for (const std::uint32_t count : Workload::Counts)
    {
        if constexpr (CanWrite<Peer, Objects> && Workload::IsWritten)
            AddBenchmark({Peer::Format, name + "Write", count, Peer::Name, {}}, MeasureWrite<Peer, Objects>);
        if constexpr (CanRead<Peer, Objects>)
            AddBenchmark({Peer::Format, name + "Read", count, GetReadName<Peer>(), {}}, MeasureRead<Peer, Objects>);
    }
}

// A peer calls it once, before main, and takes part in all lanes that it has functions for.
template <class Peer>
bool AddPeer()
{
    AddLanes<Peer, Orders>();
    AddLanes<Peer, Doubles>();
    AddLanes<Peer, Integers>();
    AddLanes<Peer, SFields>();
    AddLanes<Peer, SShuffledFields>();
    AddLanes<Peer, SLevel>();
    return true;
}

} // namespace Measured
