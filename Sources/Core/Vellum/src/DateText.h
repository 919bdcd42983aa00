#pragma once

#include <cstddef>
#include <string_view>

class IDateTime;

namespace Vellum
{

// CDateText: a date as documents of text have it, "2024-03-07T09:05:01". It is what CbDateTime::ToString gives for
// "Y-m-dTH:i:s": a field with too many digits has them all. The seven fields are asked for as when a CbDateTime is made
// of the date.
class CDateText
{
public:
    explicit CDateText(const IDateTime& date);

    std::string_view Get() const { return {text, size}; }

private:
    char text[6 * 5 + 5]; // of the largest fields
    std::size_t size;
};

} // namespace Vellum
