#include "Platform/CodePageDetector.h"

unsigned int DetectCodePage(std::span<const unsigned char>) { return 0; }
