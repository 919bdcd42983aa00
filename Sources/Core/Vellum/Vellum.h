#pragma once

/// @file
/// Everything public at once but descriptions. Each class also has a header of its own.
#include "Scribe/CScribe.h"

#include "Groundwork/CbArray.h"
#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbDateTimeStream.h"
#include "Groundwork/CbExceptions.h"
#include "Groundwork/CbMapEx.h"
#include "Groundwork/CbStreamReadBinary.h"
#include "Groundwork/CbStreamReadBinaryBuffer.h"
#include "Groundwork/CbStreamReadBinaryFile.h"
#include "Groundwork/CbStreamWriteBinary.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"
#include "Groundwork/CbStreamWriteBinaryFile.h"
#include "Groundwork/IDateTime.h"

#include "Vellum/Base64.h"
#include "Vellum/BlobRange.h"
#include "Vellum/CBinaryFile.h"
#include "Vellum/CDocumentException.h"
#include "Vellum/CException.h"
#include "Vellum/CName.h"
#include "Vellum/Conversion.h"
#include "Vellum/CReaderBinary.h"
#include "Vellum/CReaderJson.h"
#include "Vellum/CReaderXml.h"
#include "Vellum/CTextFile.h"
#include "Vellum/CValue.h"
#include "Vellum/CWriterBinary.h"
#include "Vellum/CWriterJson.h"
#include "Vellum/CWriterXml.h"
#include "Vellum/Encodings.h"
#include "Vellum/IContainerReader.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataReader.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/IReader.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"
#include "Vellum/IWriter.h"
#include "Vellum/SXmlOutcome.h"

/// Documents of objects: the contract that classes implement, the writers and readers of each format, and descriptions,
/// which implement the contract for a class. The foundations stand outside, under names that begin with `Cb`.
namespace Vellum
{
} // namespace Vellum
