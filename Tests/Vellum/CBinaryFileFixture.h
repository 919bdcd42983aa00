#pragma once

#include "Vellum/CBinaryFile.h"
#include "Vellum/CException.h"

#include "Support/CTempFolder.h"
#include "Support/Testing.h"

// A file and what reads and writes it, for both of its containers.
using Array = CbArray<unsigned char>;
using Vector = std::vector<unsigned char>;

template <class T>
class CBinaryFileOf : public testing::Test
{
protected:
    static T Make(std::string_view bytes)
    {
        T data(bytes.size());
        std::ranges::copy(bytes, data.begin());
        return data;
    }
    static std::string Text(const T& data) { return {data.begin(), data.end()}; }

    std::string Content(const char* file) const { return ReadWhole(folder.GetPath(file)); }

    const CTempFolder folder;
    const std::wstring name = folder.GetName("file");
    const std::string function = std::is_same_v<T, Array> ? "Vellum::CBinaryFile<class CbArray<unsigned char> >::"
                                                          : "Vellum::CBinaryFile<class std::vector<unsigned char,class "
                                                            "std::allocator<unsigned char> > >::";
    const std::string read = function + "Read";
    const std::string write = function + "Write";
    const std::ptrdiff_t openBefore = CountOpenFiles();

    void TearDown() override { EXPECT_EQ(CountOpenFiles(), openBefore); }
};
using Containers = testing::Types<Array, Vector>;
