#pragma once

#include <ostream>
#include <sstream>

namespace Vellum
{

// Lets a text writer write onto any stream, from where that one stands. The writers take a std::ostringstream: this one
// has the other's buffer, and flags of its own. A stream that isn't good takes nothing and is failed afterwards.
template <class Write>
void WriteThrough(std::ostream& target, const Write& write)
{
    if (!target.good())
        return target.setstate(std::ios_base::failbit);
    std::ostringstream stream;
    static_cast<std::ostream&>(stream).rdbuf(target.rdbuf());
    write(stream);
    target.setstate(stream.rdstate());
}

} // namespace Vellum
