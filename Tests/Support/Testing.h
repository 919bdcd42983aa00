#pragma once

// What nearly every test needs: GoogleTest, the everyday part of the standard library and the project's own helpers.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Support/CEnvironment.h"
#include "Support/FailEachAllocation.h"
#include "Support/GermanLocales.h"
#include "Support/Property.h"
#include "Support/Raises.h"
#include "Support/Texts.h"

namespace Support
{

// The first size that no document holds; 0 where sizes have 32 bits.
inline constexpr std::size_t FourGigabytes = static_cast<std::size_t>(std::uint64_t{1} << 32);

} // namespace Support

using namespace Support;
