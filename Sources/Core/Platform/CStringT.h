#pragma once

#include <cstddef>
#include <string>

/// The text object of the binary string table and of dates.
namespace ATL
{

/// CStringT: a standard text, with the few operations that the library needs beside it.
template <class Char>
class CStringT : public std::basic_string<Char>
{
public:
    using std::basic_string<Char>::basic_string;
    CStringT() = default;

    /// Zero-terminated; good until the text is changed.
    const Char* GetString() const { return this->c_str(); }

    /// @name Left, Right
    /// The first or last `count` characters; the whole text if it has no more than that.
    /// @{
    CStringT Left(std::size_t count) const
    {
        return CStringT(this->c_str(), this->size() < count ? this->size() : count);
    }
    CStringT Right(std::size_t count) const
    {
        const std::size_t taken = this->size() < count ? this->size() : count;
        return CStringT(this->c_str() + this->size() - taken, taken);
    }
    /// @}
};

} // namespace ATL
