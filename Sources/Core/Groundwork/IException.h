#pragma once

#include <cstdint>
#include <memory>

#include "../Platform/Export.h"

/// IException: base of every failure that the library detects. It is thrown by value, so a handler for `IException&`
/// catches all of them. It has no other base; the library's own classes are std::exceptions beside it
/// (CbExceptionBase.h).
///
/// What failed is told by the class and the function name; an exception has no text and no code of its own. What the
/// standard library raises by itself, a failed allocation for instance, is not turned into an IException.
///
/// - **Memory** The two texts belong to the exception object and live as long as it.
/// - **Threads** An exception has no shared state. A copy keeps the thread id of the thread that raised the original.
class VELLUM_API IException
{
public:
    virtual ~IException();

    /// A copy on the heap, of the same dynamic class. Writes nothing to the log.
    virtual std::unique_ptr<IException> Clone() const = 0;

    /// Path of the source file that raised the failure, relative to the repository: "Sources/Core/...".
    virtual const char* GetFilename() const = 0;

    /// Line in that file.
    virtual std::uint32_t GetCodeLine() const = 0;

    /// Name of the raising function, fully qualified and with its template arguments.
    virtual const char* GetFunctionName() const = 0;

    /// The system's number of the thread that raised the failure.
    virtual std::uint32_t GetThreadID() const = 0;

protected:
    IException() = default;
    IException(const IException&) = default;
    IException& operator=(const IException&) = default;
};
