#include "Platform/CFile.h"

#include <utility>

// What the files of all systems have in common: that a handle has one owner.
namespace Vellum::Platform
{

CFile::CFile(CFile&& other) noexcept : handle(std::exchange(other.handle, NoHandle)) {}

CFile& CFile::operator=(CFile&& other) noexcept
{
    const std::intptr_t taken = std::exchange(other.handle, NoHandle); // also from itself
    Close();
    handle = taken;
    return *this;
}

CFile::~CFile() { Close(); }

bool CFile::OpenForReading(const std::wstring& name, EPipes pipes) { return open(name, false, pipes); }
bool CFile::OpenForWriting(const std::wstring& name, EPipes pipes) { return open(name, true, pipes); }

} // namespace Vellum::Platform
