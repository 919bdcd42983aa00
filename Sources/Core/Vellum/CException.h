#pragma once

#include "Groundwork/CbExceptionBase.h"

namespace Vellum
{

/// CException: a failure of anything in namespace Vellum. Its function name tells which, as in
/// "Vellum::CReaderBinary::Read". Logged as "Exception" by the constructor, which is also the sentence of what();
/// copies are not logged.
class VELLUM_API CException : public CbExceptionBase<CException>
{
public:
    /// Source file, line and fully qualified name of the raising function; both texts must be valid and are copied.
    CException(const char* file, unsigned int line, const char* function);
    CException(const CException& other) noexcept;
    CException& operator=(const CException& other) noexcept;
    ~CException() override;

    /// Writes the exception's log entry once more.
    void LogException() const;
};

} // namespace Vellum
