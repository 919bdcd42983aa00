#include "Vellum/IContainerReader.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataReader.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/IReader.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"
#include "Vellum/IWriter.h"

// The destructors stand here, so that the interfaces' tables of virtual functions and their type information exist
// once, in the module, and not in every client.
namespace Vellum
{

ISerializable::~ISerializable() = default;
ISerializableContainer::~ISerializableContainer() = default;
IWriter::~IWriter() = default;
IReader::~IReader() = default;
IDataWriter::~IDataWriter() = default;
IContainerWriter::~IContainerWriter() = default;
IDataReader::~IDataReader() = default;
IContainerReader::~IContainerReader() = default;

} // namespace Vellum
