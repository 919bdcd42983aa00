#include "Scan.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <vector>

namespace
{

namespace fs = std::filesystem;

constexpr std::size_t HeadSize = 64;
constexpr std::size_t ProfileSize = 64 * 1024;

std::wstring WideNameOf(const fs::path& path) { return Vellum::Encodings::FromUTF8(path.filename().string()); }

// A CbDateTime counts 100 nanoseconds from 1601, 11,644,473,600 seconds before the system's clock begins.
CbDateTime DateOf(std::chrono::sys_seconds time)
{
    const std::int64_t seconds = time.time_since_epoch().count() + 11'644'473'600;
    return CbDateTime(static_cast<std::uint64_t>(seconds) * 10'000'000);
}

std::chrono::sys_seconds ModifiedTimeOf(const fs::path& path)
{
    std::error_code error;
    const fs::file_time_type time = fs::last_write_time(path, error);
    if (error)
        return {};
    return std::chrono::floor<std::chrono::seconds>(std::chrono::file_clock::to_sys(time));
}

std::int32_t AgeInDaysOf(std::chrono::sys_seconds time)
{
    return static_cast<std::int32_t>(
        std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now() - time).count());
}

std::string LoadBeginning(const fs::path& path)
{
    std::string text(ProfileSize, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

void FillContent(CCatalogFile& file, const fs::path& path)
{
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    file.size = error ? 0 : size;
    const std::string text = LoadBeginning(path);
    file.head.assign(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(std::min(text.size(), HeadSize)));
    file.profile = CTextProfile::Of(text);
}

CCatalogFile ScanFile(const fs::directory_entry& entry)
{
    CCatalogFile file;
    std::error_code error;
    const fs::file_status status = entry.symlink_status(error);
    file.name = WideNameOf(entry.path());
    file.extension = entry.path().extension().string();
    file.type = fs::is_symlink(status) ? 'l' : fs::is_regular_file(status) ? '-' : '?';
    file.isHidden = file.name.starts_with(L'.');
    file.permissions = static_cast<std::uint16_t>(status.permissions() & fs::perms::all);
    const std::chrono::sys_seconds modified = ModifiedTimeOf(entry.path());
    file.modified = DateOf(modified);
    file.ageInDays = AgeInDaysOf(modified);
    if (file.type == '-')
        FillContent(file, entry.path());
    return file;
}

// The entries of a folder by name, so that two scans give the same catalog. None if the folder can't be read.
std::vector<fs::directory_entry> EntriesOf(const fs::path& path)
{
    std::vector<fs::directory_entry> entries;
    std::error_code error;
    for (fs::directory_iterator entry(path, error); !error && entry != fs::directory_iterator(); entry.increment(error))
        entries.push_back(*entry);
    std::ranges::sort(entries, {}, [](const fs::directory_entry& entry) { return entry.path(); });
    return entries;
}

void SumUp(CCatalogFolder& folder)
{
    for (const CCatalogFile& file : folder.files.items)
        folder.totalSize += file.size;
    const std::uint64_t average = folder.files.items.empty() ? 0 : folder.totalSize / folder.files.items.size();
    for (CCatalogFile& file : folder.files.items)
        file.sizeAboveAverage = static_cast<std::int64_t>(file.size - average);
    for (const CCatalogFolder& subfolder : folder.folders.items)
        folder.totalSize += subfolder.totalSize;
}

CCatalogFolder ScanLevel(const fs::path& path, std::uint8_t depth)
{
    CCatalogFolder folder;
    folder.name = WideNameOf(path);
    folder.depth = depth;
    folder.modified = DateOf(ModifiedTimeOf(path));
    const auto depthBelow = static_cast<std::uint8_t>(std::min(depth + 1, 255));
    for (const fs::directory_entry& entry : EntriesOf(path))
    {
        std::error_code error;
        if (fs::is_directory(entry.symlink_status(error)))
            folder.folders.items.push_back(ScanLevel(entry.path(), depthBelow));
        else
            folder.files.items.push_back(ScanFile(entry));
    }
    SumUp(folder);
    return folder;
}

} // namespace

CCatalogFolder ScanFolder(const fs::path& path) { return ScanLevel(fs::canonical(path), 0); }
