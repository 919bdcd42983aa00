#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "../Platform/Export.h"
#include "../Platform/ModuleHandle.h"

namespace Vellum
{

/// CTextFile: a text in whatever encoding it came, in memory. It is loaded from a file or from a resource, or set; it
/// is handed out as wide text, and works out by itself which code page it is in.
///
/// - **Bytes** are kept as they came, with a zero byte behind them. The text may hold further ones.
/// - **Wide** text is UTF-16, one code unit in each element, whatever the width of wchar_t. Where a text is taken from
///   a pointer or from a std::wstring it ends at the first NUL, and a null pointer is the empty text.
/// - **Pages** have the numbers that Encodings takes. In addition 1200 is UTF-16 and 12000 UTF-32, little-endian both,
///   and 1201 and 12001 are the same big-endian: texts in these four can be had with GetText, but not set as such.
/// - **Marks** A byte-order mark is part of the text: nothing removes or adds one. In wide text it is U+FEFF.
/// - **Errors** As each operation tells, and std::bad_alloc.
/// - **Threads** An object belongs to one thread at a time; distinct ones may be used at once.
///
/// A text that was moved from may only be assigned to or destroyed.
class VELLUM_API CTextFile
{
public:
    /// The empty text.
    CTextFile();

    /// The empty text. GuessCodePage calls `codePageGuesser` first, with the bytes and the zero byte behind them; it
    /// gives a code page, or 0 if it can't tell. What it raises passes through. It may be empty.
    explicit CTextFile(std::function<unsigned int(const std::vector<unsigned char>&)> codePageGuesser);

    /// Both copy and move the text and the guesser.
    CTextFile(const CTextFile& other);
    CTextFile(CTextFile&& other) noexcept;
    CTextFile& operator=(const CTextFile& other);
    CTextFile& operator=(CTextFile&& other) noexcept;
    ~CTextFile();

    /// @name Read
    /// Takes the whole file, as CBinaryFile reads it. Raises CException, `"Vellum::CBinaryFile<class
    /// std::vector<unsigned char,class std::allocator<unsigned char> > >::Read"`, and holds the empty text then. A zero
    /// byte at the end of the file is taken as the one that stands behind the text: see Write.
    /// @{
    CTextFile& Read(const wchar_t* fileName);
    CTextFile& Read(const std::wstring& fileName);
    /// @}

    /// @name Read
    /// Takes a resource of a loaded module (what dlopen returned, cast to HINSTANCE; null is the program itself). The
    /// low 16 bits of the id count. The CMake function vellum_add_resource puts a file into a module as a resource.
    /// Raises CException, "Vellum::CTextFile::Read", if the module has none with this id and type, and holds the empty
    /// text then.
    /// @{
    CTextFile& Read(HINSTANCE module, int resourceId, const wchar_t* resourceType);
    CTextFile& Read(HINSTANCE module, int resourceId, const std::wstring& resourceType);
    /// @}

    /// @name Write
    /// Makes the file from the bytes of the text, without the zero byte behind them; missing folders are created, as
    /// CBinaryFile does it. Raises what `CBinaryFile<std::vector<unsigned char>>::Write` raises, and CException,
    /// "Vellum::CTextFile::Write", if the text has 4 GiB or more or was moved from; the file is not touched then.
    ///
    /// Not for a text that was read from a file in UTF-16 or UTF-32: a zero byte at the end of that file counts as the
    /// one behind the text, so the new file lacks it and ends in half a character. CBinaryFile copies files as they
    /// are; `CTextFile().SetText(text.GetText()).Write(name)` stores the text as UTF-8.
    /// @{
    void Write(const wchar_t* fileName) const;
    void Write(const std::wstring& fileName) const;
    /// @}

    /// @name SetText
    /// Takes the bytes as they are: up to the first NUL from a pointer, all of a std::string.
    /// @{
    CTextFile& SetText(const char* text);
    CTextFile& SetText(const std::string& text);
    /// @}

    /// @name SetText
    /// Takes wide text as UTF-8.
    /// @{
    CTextFile& SetText(const wchar_t* text);
    CTextFile& SetText(const std::wstring& text);
    /// @}

    /// @name SetText
    /// Takes wide text as Encodings::ToCodePage gives it; empty if that doesn't know the page.
    /// @{
    CTextFile& SetText(const wchar_t* text, unsigned int codePage);
    CTextFile& SetText(const std::wstring& text, unsigned int codePage);
    /// @}

    /// The text up to the first zero byte, decoded with the result of GuessCodePage, or else with the code page of the
    /// user's environment. It is guessed anew at each call.
    std::wstring GetText() const;

    /// The text, decoded with this code page as Encodings::FromCodePage does it: up to the first zero byte, and empty
    /// if the page isn't known. UTF-16 and UTF-32 are decoded in whole units up to the first one that is zero; what is
    /// left over at the end is no text. Surrogates in UTF-16 stay as they are. In UTF-32, U+FFFD replaces surrogates
    /// and what is above 0x10FFFF.
    std::wstring GetText(unsigned int codePage) const;

    /// The bytes as they are, up to the first zero byte.
    std::string GetTextRaw() const;

    /// The code page of the text, 0 if it can't be told. The first answer counts: that of the guesser, if it isn't 0,
    /// then the byte-order marks of UTF-7 ("+/v"), UTF-8, UTF-32 and UTF-16 in both byte orders and GB 18030, then
    /// UTF-8 if the text is well-formed as such and has a character beyond ASCII (the last one may be cut off), and
    /// last a statistical guess from the bytes, if the library was built with a detector.
    unsigned int GuessCodePage() const;

private:
    void initBuffer();
    CTextFile& setBytes(std::string_view bytes);

    // Outside an object that was moved from it isn't empty and its last byte is 0.
    std::vector<unsigned char> buffer;
    std::function<unsigned int(const std::vector<unsigned char>&)> codePageGuesser;
};

} // namespace Vellum
