#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "Support/System.h"

namespace Support
{

// Gives a variable of the process's environment another value, or none at all for null, for as long as it lives.
class CEnvironment
{
public:
    CEnvironment(const char* variable, const char* value) : variable(variable)
    {
        if (const char* present = std::getenv(variable))
            before = present;
        SetVariable(variable, value);
    }
    ~CEnvironment() { SetVariable(variable, before ? before->c_str() : nullptr); }
    CEnvironment(const CEnvironment&) = delete;
    CEnvironment& operator=(const CEnvironment&) = delete;

private:
    const char* variable;
    std::optional<std::string> before;
};

} // namespace Support
