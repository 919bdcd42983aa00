#include "Support/CLogObserver.h"

#include "Scribe/CScribe.h"

namespace Support
{

CLogObserver::CLogObserver()
{
    Scribing::SetSink(
        [this](const Scribing::SEntry& entry)
        {
            const std::lock_guard lock(mutex);
            entries.push_back({entry.source, entry.file, entry.line, entry.function, entry.text});
        });
}

CLogObserver::~CLogObserver() { Scribing::SetSink({}); }

std::vector<CLogObserver::SEntry> CLogObserver::GetEntries() const
{
    const std::lock_guard lock(mutex);
    return entries;
}

std::vector<std::string> CLogObserver::GetFunctions() const
{
    std::vector<std::string> functions;
    for (const SEntry& entry : GetEntries())
        functions.push_back(entry.function);
    return functions;
}

} // namespace Support
