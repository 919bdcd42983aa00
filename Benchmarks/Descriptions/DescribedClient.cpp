#include "Described.h"

using Described::SShop;

// What a program does with its classes: out and in, in each format.
SShop ThroughAll(const SShop& shop)
{
    const auto first = Vellum::FromBinary<SShop>(Vellum::ToBinary(shop));
    const auto second = Vellum::FromJson<SShop>(Vellum::ToJson(first));
    return Vellum::FromXml<SShop>(Vellum::ToXml(second));
}
