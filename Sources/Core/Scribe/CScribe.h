#pragma once

#include <functional>

#include "../Platform/Export.h"

/// The log. There is one level, error, and an entry says where a failure was raised and one sentence about it.
namespace Scribing
{

/// One entry on its way out. The pointers are good for the call of the sink that they are given to.
struct SEntry
{
    const wchar_t* source; ///< Name of the log source that made the entry
    const char* file;      ///< Source file, as the build names it
    int line;              ///< In that file
    const char* function;  ///< Fully qualified name of the raising function
    const wchar_t* text;   ///< One sentence
};

/// What takes entries.
using Sink = std::function<void(const SEntry&)>;

/// Hands all later entries to the sink, in place of the one line of UTF-8 per entry on standard error. A sink that does
/// nothing silences the log, an empty one brings standard error back.
///
/// - **Threads** May be called at any time from any thread. The sink is called on the thread that made the entry, by
///   several threads at once if they make entries at once; an entry that is under way during the call may still reach
///   the sink that was there before.
/// - **Errors** What a sink raises is dropped: to log never fails.
VELLUM_API void SetSink(Sink sink);

/// CScribe: a named source of log entries.
///
/// - **Threads** Error may be called from all threads at once.
/// - **Errors** Nothing is ever raised: an entry that can't be made or delivered is lost.
class VELLUM_API CScribe
{
public:
    /// The name isn't copied: a literal, or a text that lives as long as the source. A static source needs no code that
    /// makes or destroys it, so it is there for all other statics.
    constexpr explicit CScribe(const wchar_t* name) noexcept : source(name) {}

    CScribe(const CScribe&) = delete;
    CScribe& operator=(const CScribe&) = delete;

    /// Records one error with its origin. The text is a format as for vswprintf, the arguments behind it are its own;
    /// an entry's text ends after 1023 characters. Narrow arguments (%s) are decoded in the locale of the thread, wide
    /// ones (%ls) need none.
    void Error(const char* file, int line, const char* function, const wchar_t* text, ...) const noexcept;

private:
    const wchar_t* source;
};

} // namespace Scribing
