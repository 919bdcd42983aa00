#pragma once

#include "../Platform/Export.h"

class CbStreamReadBinary;
class CbStreamWriteBinary;
class IDateTime;

// Dates on binary streams: version:u32, always 0, and the tick count of CbDateTime::ToFileTime:u64. Milliseconds
// survive. A date that is none is written as tick count 0, and so comes back as 1601-01-01 00:00:00.000.

/// Writes a date and returns the stream. Raises what the stream raises.
VELLUM_API CbStreamWriteBinary& operator<<(CbStreamWriteBinary& stream, const IDateTime& date);

/// Reads a date and returns the stream. Sets the seven fields through the setters, in their order from the year to the
/// milliseconds, once everything has been read. Raises CbExceptionWrongFileVersion
/// ("CbStreamRead::ReadAndCompareVersion") for another version, and what the stream raises.
VELLUM_API CbStreamReadBinary& operator>>(CbStreamReadBinary& stream, IDateTime& date);
