#pragma once

/// @file
/// One description of a class, and nothing else to write: the fields are listed once, and the class can be stored in
/// all formats and read back. [Docs/Describe.md](Docs/Describe.md) tells how each type is stored.
///
///     struct SLine                                  // an aggregate needs no description
///     {
///         std::uint16_t count = 0;
///         std::optional<std::string> note;
///     };
///
///     const std::string json = Vellum::ToJson(line);
///     const auto copy = Vellum::FromJson<SLine>(json);
///     Vellum::Save("line.xml", line);
///
/// Vellum/Vellum.h doesn't include this header, and this one includes of it what it needs.

#include "Vellum/CDocumentException.h"

#include "Describe/Bytes.h"
#include "Describe/Documents.h"
#include "Describe/Enumerations.h"
#include "Describe/Fields.h"
#include "Describe/Files.h"
#include "Describe/Maps.h"
#include "Describe/Objects.h"
#include "Describe/Pointers.h"
#include "Describe/Sequences.h"
#include "Describe/Texts.h"
#include "Describe/Times.h"
#include "Describe/Values.h"
#include "Describe/Variants.h"
