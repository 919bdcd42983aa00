#pragma once

#include "Vellum/IReader.h"

namespace Fuzzing
{

// A client that wants everything: reads the document once as an object and once as a sequence, asks for every key and
// every index in every kind, follows what is nested, and touches every byte that it is handed. What it must never see
// fails the input: an exception that is no IException, and a Read that gives false and yet changes its argument.
//
// It stops after some thousand keys and elements, since a document can name one object under many keys.
void VisitAll(const Vellum::IReader& reader);

} // namespace Fuzzing
