// What the library promises about threads. This program also runs under ThreadSanitizer.

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Scribe/CScribe.h"

#include "CEverything.h"
#include "Formats.h"

namespace
{

constexpr int Rounds = 50;

// Runs the body on several threads at once, with the number of the thread.
void OnThreads(const std::function<void(int thread)>& body)
{
    std::atomic<int> waiting = 4;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back(
            [&, thread]
            {
                for (--waiting; waiting != 0;)
                    std::this_thread::yield();
                body(thread);
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
        [](int thread)
        {
            for (int round = 0; round < Rounds; ++round)
            {
                const CEverything written = CEverything::Make(thread * Rounds + round);
                ExpectComesBack<Formats::SBinary>(written);
                ExpectComesBack<Formats::SJson>(written);
                ExpectComesBack<Formats::SXml>(written);
            }
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
            for (int round = 0; round < Rounds; ++round)
            {
                CEverything read;
                reader.Read(read);
                EXPECT_EQ(read, written);
            }
        });
}

TEST(Threads, LogAtOnce)
{
    std::atomic<int> entries = 0;
    Scribing::SetSink([&](const Scribing::SEntry&) { ++entries; });
    OnThreads(
        [](int)
        {
            CEverything root;
            for (int round = 0; round < Rounds; ++round)
                EXPECT_THROW(Formats::SBinary::Read("", root), CbExceptionStream);
        });
    Scribing::SetSink({});
    EXPECT_EQ(entries, 4 * Rounds);
}
