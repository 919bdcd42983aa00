#pragma once

#include <tuple>

#include <gtest/gtest.h>

#include "Platform/SystemTime.h"

inline auto AsTuple(const Vellum::Platform::SSystemTime& t)
{
    return std::tuple(t.year, t.month, t.dayOfWeek, t.day, t.hour, t.minute, t.second, t.milliseconds);
}

inline void ExpectFields(const Vellum::Platform::SSystemTime& actual, const Vellum::Platform::SSystemTime& expected)
{
    EXPECT_EQ(AsTuple(actual), AsTuple(expected));
}
