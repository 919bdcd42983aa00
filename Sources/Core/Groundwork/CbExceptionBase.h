#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Platform/Export.h"

#include "Groundwork/IException.h"

// CbExceptionBase: what all exception classes have in common, written once. A class derives from it with itself as
// the argument and adds its constructor, which logs.
//
// A null file or function name is recorded as the empty text.
template <class Exception>
class CbExceptionBase : public IException
{
public:
    // The operations of IException, the same for all exception classes.
    std::unique_ptr<IException> Clone() const override
    {
        return std::make_unique<Exception>(static_cast<const Exception&>(*this));
    }
    const char* GetFilename() const override { return filename.c_str(); }
    std::uint32_t GetCodeLine() const override { return codeLine; }
    const char* GetFunctionName() const override { return functionName.c_str(); }
    std::uint32_t GetThreadID() const override { return threadId; }

protected:
    // Copies the two texts and takes the number of the calling thread.
    CbExceptionBase(const char* file, std::uint32_t line, const char* function)
        : filename(file == nullptr ? "" : file),
          codeLine(line),
          functionName(function == nullptr ? "" : function),
          threadId(GetCallingThread())
    {
    }

private:
    std::string filename;
    std::uint32_t codeLine;
    std::string functionName;
    std::uint32_t threadId;
};
