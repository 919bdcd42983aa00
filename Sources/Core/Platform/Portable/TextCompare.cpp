#include "Platform/TextCompare.h"

#include <limits>

namespace Vellum::Platform
{

int CompareWithoutCase(const char* left, const char* right) noexcept
{
    return CompareWithoutCase(left, right, std::numeric_limits<std::size_t>::max());
}

int CompareWithoutCase(const char* left, const char* right, std::size_t count) noexcept
{
    for (; count != 0; --count, ++left, ++right)
    {
        if (*left == *right && *left != 0)
            continue;
        const auto leftByte = static_cast<unsigned char>(FoldCase(*left));
        const auto rightByte = static_cast<unsigned char>(FoldCase(*right));
        if (leftByte != rightByte)
            return leftByte < rightByte ? -1 : 1;
        if (leftByte == 0)
            break;
    }
    return 0;
}

} // namespace Vellum::Platform
