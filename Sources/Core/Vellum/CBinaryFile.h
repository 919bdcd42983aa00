#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <vector>

#include "../Platform/Export.h"

#include "Groundwork/CbArray.h"

namespace Vellum
{

/// The containers that CBinaryFile fills and stores.
template <class T>
concept BinaryFileData = std::same_as<T, CbArray<unsigned char>> || std::same_as<T, std::vector<unsigned char>>;

/// CBinaryFile: whole files as bytes.
///
/// - **Names** Wide text, UTF-16, up to the first NUL; a null pointer is the empty name, which no file has. Names that
///   aren't absolute start at the current folder.
/// - **Sharing** Others may read a file while it is read, and nobody may open one while it is written; see CFile.
/// - **Errors** CException for everything that goes wrong with the file. Its function name is that of the
///   instantiation: `"Vellum::CBinaryFile<class CbArray<unsigned char> >::Read"`, `"Vellum::CBinaryFile<class
///   std::vector<unsigned char,class std::allocator<unsigned char> > >::Read"`, and "...::Write". std::bad_alloc if the
///   container can't be had. No file stays open.
/// - **Threads** Any thread; there is no state.
template <BinaryFileData T>
class CBinaryFile
{
public:
    /// @name Read
    /// The whole file. Fails if it can't be opened, can't be read, or has 4 GiB or more; nothing is allocated then.
    /// Size and bytes are taken under one lock. A pipe is refused at once, and a device reads as empty: ask for a
    /// count.
    /// @{
    static T Read(const wchar_t* fileName);
    static T Read(const std::wstring& fileName);
    /// @}

    /// @name Read
    /// The first `count` bytes of the file; fails if it has fewer, a regular file before anything is allocated. A pipe
    /// is refused at once.
    /// @{
    static T Read(const wchar_t* fileName, unsigned int count);
    static T Read(const std::wstring& fileName, unsigned int count);
    /// @}

    /// @name Write
    /// Makes the file from all of `data`, or from its first `size` bytes. What the file held before is gone; the
    /// folders of its path are created where they are missing. Fails if `size` is more than `data` has or the file
    /// can't be opened or is a pipe, the file staying as it was, and if it can't be written: it is empty or partly
    /// written then. Raises the std::filesystem::filesystem_error of std::filesystem::create_directories if a folder
    /// can't be had.
    /// @{
    static void Write(const wchar_t* fileName, const T& data);
    static void Write(const std::wstring& fileName, const T& data);
    static void Write(const wchar_t* fileName, const T& data, std::size_t size);
    static void Write(const std::wstring& fileName, const T& data, std::size_t size);
    /// @}
};

extern template class VELLUM_API CBinaryFile<CbArray<unsigned char>>;
extern template class VELLUM_API CBinaryFile<std::vector<unsigned char>>;

} // namespace Vellum
