#pragma once

#include <string>

#include <gtest/gtest.h>

#include "Groundwork/IException.h"

#include "Support/CLogObserver.h"

// EXPECT_RAISES(CException, "Vellum::Base64::Decode", statement): the statement raises exactly that class from that
// function, and the log has exactly one entry of it.
#define EXPECT_RAISES(Class, function, ...)                                                                            \
    do                                                                                                                 \
    {                                                                                                                  \
        Support::CLogObserver raisesObserver;                                                                          \
        bool raisesThrown = false;                                                                                     \
        try                                                                                                            \
        {                                                                                                              \
            __VA_ARGS__;                                                                                               \
        }                                                                                                              \
        catch (const Class& exception)                                                                                 \
        {                                                                                                              \
            raisesThrown = true;                                                                                       \
            EXPECT_STREQ(exception.GetFunctionName(), function);                                                       \
            EXPECT_EQ(std::string(exception.GetFilename()).substr(0, 13), "Sources/Core/");                            \
            EXPECT_EQ(raisesObserver.GetFunctions(), std::vector<std::string>{function});                              \
        }                                                                                                              \
        catch (const IException& exception)                                                                            \
        {                                                                                                              \
            raisesThrown = true;                                                                                       \
            ADD_FAILURE() << "another class, from " << exception.GetFunctionName();                                    \
        }                                                                                                              \
        EXPECT_TRUE(raisesThrown) << "nothing was raised";                                                             \
    } while (false)
