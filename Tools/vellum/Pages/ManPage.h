#pragma once

#include <string>

struct SProgram;

// The program's page of section 1, in the language of man pages.
std::string MakeManPage(const SProgram& program);
