#pragma once

#include "Groundwork/CbDateTime.h"

#include "Vellum/CValue.h"

namespace Vellum
{

// What objects and sequences have beside their content. Only roots of binary documents have texts.
struct CValue::SObject
{
    CName typeName;
    std::vector<SField> fields = {};
    Texts texts = nullptr;
};

struct CValue::SSequence
{
    CName typeName;
    std::vector<CValue> elements = {};
    Texts texts = nullptr;
};

} // namespace Vellum
