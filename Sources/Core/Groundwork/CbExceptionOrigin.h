#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "../Platform/Export.h"

/// CbExceptionOrigin: what an exception remembers: where and on which thread it was raised, and the line that tells it.
///
/// - **Memory** The texts lie in the object itself, or, where they have more than some 300 bytes together, in one block
///   that all copies share. If there is no memory for that block, they are cut, and the message is the function alone:
///   nothing here ever fails.
/// - **Threads** An object is never changed but by assignment, so any number of threads may look at one.
class VELLUM_API CbExceptionOrigin
{
public:
    /// Copies the three texts, of which null counts as the empty one, and takes the number of the calling thread. What
    /// is beyond 255 bytes of UTF-8 in the sentence is cut off.
    CbExceptionOrigin(const char* file, std::uint32_t line, const char* function, const wchar_t* sentence) noexcept;

    /// @name GetFilename ... GetThreadID
    /// The pointers live as long as the object, or until it is assigned to.
    /// @{
    const char* GetFilename() const noexcept { return getTexts(); }
    std::uint32_t GetCodeLine() const noexcept { return codeLine; }
    const char* GetFunctionName() const noexcept { return getTexts() + functionAt; }
    std::uint32_t GetThreadID() const noexcept { return threadId; }
    /// @}

    /// "Function: Sentence", or what there is of the two. The sentence is UTF-8 here.
    const char* GetMessage() const noexcept { return getTexts() + messageAt; }

private:
    void setTexts(std::string_view file, std::string_view function, std::string_view sentence) noexcept;
    void setCutTexts(std::string_view file, std::string_view function) noexcept;
    const char* getTexts() const noexcept { return shared ? shared->c_str() : own.data(); }

    std::shared_ptr<const std::string> shared; // null if the texts are in `own`
    std::uint32_t codeLine;
    std::uint32_t threadId;
    std::uint32_t functionAt; // texts: file, function and message, each with its NUL
    std::uint32_t messageAt;
    std::array<char, 320> own;
};
