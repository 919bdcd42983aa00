#pragma once

// Everything public at once. Each class also has a header of its own.
#include "Groundwork/CbArray.h"
#include "Groundwork/CbExceptions.h"
#include "Groundwork/CbStreamReadBinary.h"
#include "Groundwork/CbStreamReadBinaryBuffer.h"
#include "Groundwork/CbStreamReadBinaryFile.h"
#include "Groundwork/CbStreamWriteBinary.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"
#include "Groundwork/CbStreamWriteBinaryFile.h"
#include "Groundwork/IDateTime.h"

#include "Vellum/BlobRange.h"
#include "Vellum/CException.h"
#include "Vellum/IContainerReader.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataReader.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/IReader.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"
#include "Vellum/IWriter.h"
