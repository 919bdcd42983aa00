#pragma once

#include "Groundwork/CbExceptionBase.h"

/// @file
/// The exceptions of the foundation classes. Each is logged where it is raised, once, by its constructor. Copies are
/// not logged. The sentence of the log is that of what() too.

/// A value that can't be converted: CbDateTime. Logged as "Exception on data conversion".
class VELLUM_API CbExceptionConversion : public CbExceptionBase<CbExceptionConversion>
{
public:
    /// Source file, line and fully qualified name of the raising function. The texts are copied.
    CbExceptionConversion(const char* file, unsigned int line, const char* function);

    CbExceptionConversion(const CbExceptionConversion& other) noexcept;
    CbExceptionConversion& operator=(const CbExceptionConversion& other) noexcept;
    ~CbExceptionConversion() override;
};

/// Nodes of a table that can't be had, or a table that may not change its pool. Logged as "Out of memory".
class VELLUM_API CbExceptionContainer : public CbExceptionBase<CbExceptionContainer>
{
public:
    /// Source file, line and fully qualified name of the raising function. The texts are copied.
    CbExceptionContainer(const char* file, unsigned int line, const char* function);

    CbExceptionContainer(const CbExceptionContainer& other) noexcept;
    CbExceptionContainer& operator=(const CbExceptionContainer& other) noexcept;
    ~CbExceptionContainer() override;
};

/// A stored version that is newer than this library. Logged as "Wrong file version on stream".
class VELLUM_API CbExceptionWrongFileVersion : public CbExceptionBase<CbExceptionWrongFileVersion>
{
public:
    /// Source file, line and fully qualified name of the raising function. The texts are copied.
    CbExceptionWrongFileVersion(const char* file, unsigned int line, const char* function);

    CbExceptionWrongFileVersion(const CbExceptionWrongFileVersion& other) noexcept;
    CbExceptionWrongFileVersion& operator=(const CbExceptionWrongFileVersion& other) noexcept;
    ~CbExceptionWrongFileVersion() override;
};

/// A stream that has run out of bytes, holds none of what was asked for, or failed. Logged as "Exception on stream
/// access".
class VELLUM_API CbExceptionStream : public CbExceptionBase<CbExceptionStream>
{
public:
    /// Source file, line and fully qualified name of the raising function. The texts are copied.
    CbExceptionStream(const char* file, unsigned int line, const char* function);

    CbExceptionStream(const CbExceptionStream& other) noexcept;
    CbExceptionStream& operator=(const CbExceptionStream& other) noexcept;
    ~CbExceptionStream() override;
};
