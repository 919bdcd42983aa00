#pragma once

#include <string_view>

namespace Vellum
{

// What CWriterJson's writers of fields and elements can do beside the contract: write a word as it stands.
class IJsonTokens
{
public:
    // The key is null for an element.
    virtual void WriteToken(const char* key, std::string_view token) = 0;

protected:
    ~IJsonTokens() = default;
};

} // namespace Vellum
