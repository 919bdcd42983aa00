#include <cereal/archives/binary.hpp>
#include <cereal/archives/json.hpp>
#include <cereal/archives/xml.hpp>
#include <sstream>

#include "Cereal.h"

using Cereal::SShop;

namespace
{

template <class Output, class Input>
SShop Through(const SShop& shop)
{
    std::stringstream stream;
    {
        Output archive(stream);
        archive(shop);
    }
    SShop copy;
    Input archive(stream);
    archive(copy);
    return copy;
}

} // namespace

// What a program does with its classes: out and in, in each format.
SShop ThroughAll(const SShop& shop)
{
    const SShop first = Through<cereal::BinaryOutputArchive, cereal::BinaryInputArchive>(shop);
    const SShop second = Through<cereal::JSONOutputArchive, cereal::JSONInputArchive>(first);
    return Through<cereal::XMLOutputArchive, cereal::XMLInputArchive>(second);
}
