#include "Scribe/CScribe.h"

// Called once before the first input, by the fuzzer's own main program and by the replay. Bad input is the daily bread
// of a fuzz target, so the log of failures is silenced.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    Scribing::SetSink([](const Scribing::SEntry&) {});
    return 0;
}
