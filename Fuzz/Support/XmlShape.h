#pragma once

#include "Support/ClientTree.h"

namespace Fuzzing
{

// What an XML document brings back.
STreeShape MakeXmlShape();

} // namespace Fuzzing
