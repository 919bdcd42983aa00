#pragma once

#include <string>

namespace Vellum
{

class ISerializable;
class ISerializableContainer;

} // namespace Vellum

namespace Measured
{

// What Vellum writes, for peers that only read.
std::string WriteVellumJson(const Vellum::ISerializableContainer& objects);
std::string WriteVellumJson(const Vellum::ISerializable& objects);

} // namespace Measured
