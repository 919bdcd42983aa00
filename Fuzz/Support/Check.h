#pragma once

#include <string>

// FUZZ_CHECK(condition): what must hold for every input. Prints the condition and aborts, which a fuzzer and the
// replay both report as a failure of the input at hand.
#define FUZZ_CHECK(condition) ((condition) ? static_cast<void>(0) : Fuzzing::Fail(#condition, __FILE__, __LINE__))

// FUZZ_CHECK_NONE(text): the text, which tells what is wrong, must be empty. Prints it and aborts.
#define FUZZ_CHECK_NONE(text) Fuzzing::CheckNone(text, __FILE__, __LINE__)

namespace Fuzzing
{

[[noreturn]] void Fail(const char* what, const char* file, int line);

inline void CheckNone(const std::string& text, const char* file, int line)
{
    if (!text.empty())
        Fail(text.c_str(), file, line);
}

} // namespace Fuzzing
