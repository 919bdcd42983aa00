#pragma once

#include <cstdint>
#include <exception>
#include <memory>

#include "../Platform/Export.h"

#include "Groundwork/CbExceptionOrigin.h"
#include "Groundwork/IException.h"

/// CbExceptionBase: what all exception classes have in common, written once. It makes them std::exceptions as well, so
/// that programs which know nothing of IException, and the message of std::terminate, tell what went wrong.
///
/// A class derives from it with itself as the argument and adds its constructor, which logs if it is to be logged.
/// Classes of clients do the same, whichever way they link the library; one that is caught in another module than the
/// one that raised it has to be exported from there.
///
///     class CShopException : public CbExceptionBase<CShopException>
///     {
///     public:
///         CShopException(const char* file, unsigned int line, const char* function)
///             : CbExceptionBase(file, line, function, L"The shop is closed")
///         {
///         }
///     };
///
/// - **Errors** Making and copying one never fails. With no memory left, texts of more than some 300 bytes are cut.
template <class Exception>
class CbExceptionBase : public IException, public std::exception
{
public:
    /// A copy on the heap. Raises std::bad_alloc.
    std::unique_ptr<IException> Clone() const override
    {
        return std::make_unique<Exception>(static_cast<const Exception&>(*this));
    }

    /// @name GetFilename ... GetThreadID
    /// Where and on which thread the failure was raised, as IException tells.
    /// @{
    const char* GetFilename() const override { return origin.GetFilename(); }
    std::uint32_t GetCodeLine() const override { return origin.GetCodeLine(); }
    const char* GetFunctionName() const override { return origin.GetFunctionName(); }
    std::uint32_t GetThreadID() const override { return origin.GetThreadID(); }
    /// @}

    /// One line: the function name and the sentence of the class, as in "Vellum::CReaderBinary::Read: Exception". It
    /// lives as long as the exception, or until that is assigned to.
    const char* what() const noexcept override { return origin.GetMessage(); }

protected:
    /// Copies the texts and takes the number of the calling thread. A null file or function name is recorded as the
    /// empty text; a class without a sentence has the function name alone in what().
    CbExceptionBase(const char* file, std::uint32_t line, const char* function,
                    const wchar_t* sentence = nullptr) noexcept
        : origin(file, line, function, sentence)
    {
    }

private:
    CbExceptionOrigin origin;
};
