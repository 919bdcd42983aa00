// What the library promises about threads. This program also runs under ThreadSanitizer.

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Scribe/CScribe.h"

#include "CEverything.h"

namespace
{

constexpr int Rounds = 50;

// Runs the body in rounds on several threads at once, each time with another number.
void OnThreads(const std::function<void(int number)>& body)
{
    std::atomic<int> waiting = 4;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back(
            [&, thread]
            {
                for (--waiting; waiting != 0;)
                    std::this_thread::yield();
                for (int round = 0; round < Rounds; ++round)
                    body(thread * Rounds + round);
            });
    for (std::thread& thread : threads)
        thread.join();
}

template <class Format>
void ExpectComesBack(const CEverything& written)
{
    CEverything read;
    Format::Read(Format::Write(written), read);
    EXPECT_EQ(read, written);
}

} // namespace

TEST(Threads, WriteAndReadDistinctDocumentsAtOnce)
{
    OnThreads(
        [](int number)
        {
            const CEverything written = CEverything::Make(number);
            ExpectComesBack<Formats::SBinary>(written);
            ExpectComesBack<Formats::SJson>(written);
            ExpectComesBack<Formats::SXml>(written);
        });
}

TEST(Threads, ReadFromOneBinaryDocumentAtOnce)
{
    const CEverything written = CEverything::Make(5);
    const std::string document = Formats::SBinary::Write(written);
    CbStreamReadBinaryBuffer stream(document.data(), document.size());
    const Vellum::CReaderBinary reader(stream);
    OnThreads(
        [&](int)
        {
            CEverything read;
            reader.Read(read);
            EXPECT_EQ(read, written);
        });
}

TEST(Threads, LogAtOnce)
{
    std::atomic<int> entries = 0;
    Scribing::SetSink([&](const Scribing::SEntry&) { ++entries; });
    OnThreads([](int) { EXPECT_THROW(Support::ReadBinary("", CEverything()), CbExceptionStream); });
    Scribing::SetSink({});
    EXPECT_EQ(entries, 4 * Rounds);
}
