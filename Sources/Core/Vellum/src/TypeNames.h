#pragma once

#include "Groundwork/CbTypeName.h"

// The names of the library's own classes inside the names of containers.
namespace Vellum
{

class CContainerReader;
class CContainerWriterBinary;
class CDataReader;
class CDataWriterBinary;
struct SJsonElement;

} // namespace Vellum

template <>
struct CbTypeName<Vellum::CContainerReader>
{
    static constexpr auto Value = CbText("class Vellum::CContainerReader");
};
template <>
struct CbTypeName<Vellum::CContainerWriterBinary>
{
    static constexpr auto Value = CbText("class Vellum::CContainerWriterBinary");
};
template <>
struct CbTypeName<Vellum::CDataReader>
{
    static constexpr auto Value = CbText("class Vellum::CDataReader");
};
template <>
struct CbTypeName<Vellum::CDataWriterBinary>
{
    static constexpr auto Value = CbText("class Vellum::CDataWriterBinary");
};
template <>
struct CbTypeName<Vellum::SJsonElement>
{
    static constexpr auto Value = CbText("struct Vellum::SJsonElement");
};
