#pragma once

// FUZZ_CHECK(condition): what must hold for every input. Prints the condition and aborts, which a fuzzer and the
// replay both report as a failure of the input at hand.
#define FUZZ_CHECK(condition) ((condition) ? static_cast<void>(0) : Fuzzing::Fail(#condition, __FILE__, __LINE__))

namespace Fuzzing
{

[[noreturn]] void Fail(const char* condition, const char* file, int line);

} // namespace Fuzzing
