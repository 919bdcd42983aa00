#include "Vellum/CBinaryFile.h"

#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <ranges>

#include "Platform/CFile.h"
#include "Platform/FilePath.h"

#include "Vellum/CException.h"

namespace Vellum
{
namespace
{

// What the two containers differ in: the name of a failure's function, and how `Make` makes `count` zero bytes.
template <class T>
struct SContainer;

template <>
struct SContainer<CbArray<unsigned char>>
{
    static constexpr const char* Read = "Vellum::CBinaryFile<class CbArray<unsigned char> >::Read";
    static constexpr const char* Write = "Vellum::CBinaryFile<class CbArray<unsigned char> >::Write";

    static CbArray<unsigned char> Make(unsigned int count) { return CbArray<unsigned char>(count); }
};

template <>
struct SContainer<std::vector<unsigned char>>
{
    static constexpr const char* Read =
        "Vellum::CBinaryFile<class std::vector<unsigned char,class std::allocator<unsigned char> > >::Read";
    static constexpr const char* Write =
        "Vellum::CBinaryFile<class std::vector<unsigned char,class std::allocator<unsigned char> > >::Write";

    // With room for the zero byte that CTextFile puts behind a text, which would otherwise cost a copy of all of it.
    static std::vector<unsigned char> Make(unsigned int count)
    {
        std::vector<unsigned char> data;
        data.reserve(std::size_t{count} + 1);
        data.resize(count);
        return data;
    }
};

std::wstring ToName(const wchar_t* fileName) { return fileName == nullptr ? std::wstring() : fileName; }

template <class T>
T ReadStart(Platform::CFile& file, unsigned int count)
{
    T data = SContainer<T>::Make(count);
    if (file.Read(std::ranges::data(data), count) != count)
        throw CException(__FILE__, __LINE__, SContainer<T>::Read);
    return data;
}

void CreateFolderOf(const std::wstring& name)
{
    if (const std::error_code error = Platform::CreateFolderOf(name))
        throw std::filesystem::filesystem_error("cannot create directories",
                                                Platform::ToFilePath(name).remove_filename(), error);
}

} // namespace

template <BinaryFileData T>
T CBinaryFile<T>::Read(const wchar_t* fileName)
{
    Platform::CFile file;
    constexpr std::uint64_t NoSize = std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t size = file.OpenForReading(ToName(fileName)) ? file.GetSize().value_or(NoSize) : NoSize;
    if (size > std::numeric_limits<std::uint32_t>::max())
        throw CException(__FILE__, __LINE__, SContainer<T>::Read);
    return ReadStart<T>(file, static_cast<unsigned int>(size));
}

template <BinaryFileData T>
T CBinaryFile<T>::Read(const std::wstring& fileName)
{
    return Read(fileName.c_str());
}

template <BinaryFileData T>
T CBinaryFile<T>::Read(const wchar_t* fileName, unsigned int count)
{
    Platform::CFile file;
    if (!file.OpenForReading(ToName(fileName)) || !file.MayHold(count))
        throw CException(__FILE__, __LINE__, SContainer<T>::Read);
    return ReadStart<T>(file, count);
}

template <BinaryFileData T>
T CBinaryFile<T>::Read(const std::wstring& fileName, unsigned int count)
{
    return Read(fileName.c_str(), count);
}

template <BinaryFileData T>
void CBinaryFile<T>::Write(const wchar_t* fileName, const T& data)
{
    Write(fileName, data, std::ranges::size(data));
}

template <BinaryFileData T>
void CBinaryFile<T>::Write(const std::wstring& fileName, const T& data)
{
    Write(fileName.c_str(), data, std::ranges::size(data));
}

template <BinaryFileData T>
void CBinaryFile<T>::Write(const wchar_t* fileName, const T& data, std::size_t size)
{
    if (size > std::ranges::size(data))
        throw CException(__FILE__, __LINE__, SContainer<T>::Write);
    const std::wstring name = ToName(fileName);
    CreateFolderOf(name);
    Platform::CFile file;
    const bool written = file.OpenForWriting(name) && file.Write(std::ranges::data(data), size);
    if (!written || !file.Close()) // some file systems tell only then that they had no room
        throw CException(__FILE__, __LINE__, SContainer<T>::Write);
}

template <BinaryFileData T>
void CBinaryFile<T>::Write(const std::wstring& fileName, const T& data, std::size_t size)
{
    Write(fileName.c_str(), data, size);
}

template class CBinaryFile<CbArray<unsigned char>>;
template class CBinaryFile<std::vector<unsigned char>>;

} // namespace Vellum
