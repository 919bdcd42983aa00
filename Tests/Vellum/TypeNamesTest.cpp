#include "Vellum/src/TypeNames.h"

#include <string>

#include <gtest/gtest.h>

#include "Groundwork/CbArray.h"
#include "Groundwork/CbMapEx.h"

namespace
{

using CbMapTypes::SAssociation;
using Vellum::CContainerReader;
using Vellum::CContainerWriterBinary;
using Vellum::CDataReader;
using Vellum::CDataWriterBinary;
using Vellum::SJsonElement;

const std::string Text = "class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> >";
const std::string WideText =
    "class std::basic_string<wchar_t,struct std::char_traits<wchar_t>,class std::allocator<wchar_t> >";

std::string Unique(const std::string& name)
{
    return "class std::unique_ptr<" + name + ",struct std::default_delete<" + name + "> >";
}

// What the pool of a table's nodes reports, from the told names of key and value.
template <class Key, class Value>
void ExpectName(const std::string& key, const std::string& value)
{
    const std::string close = value.ends_with('>') ? " >" : ">";
    using Node = SAssociation<Key, Value>;
    EXPECT_EQ(CbTypeName<Node>::Value.GetString(), "struct CbMapTypes::SAssociation<" + key + "," + value + close);
}

// The kinds that the tables of both keys hold.
template <class Key>
void ExpectNamesOfKinds(const std::string& key)
{
    ExpectName<Key, bool>(key, "bool");
    ExpectName<Key, unsigned char>(key, "unsigned char");
    ExpectName<Key, signed char>(key, "signed char");
    ExpectName<Key, std::uint16_t>(key, "unsigned short");
    ExpectName<Key, std::int16_t>(key, "short");
    ExpectName<Key, std::uint32_t>(key, "unsigned int");
    ExpectName<Key, std::int32_t>(key, "int");
    ExpectName<Key, std::uint64_t>(key, "unsigned __int64");
    ExpectName<Key, std::int64_t>(key, "__int64");
    ExpectName<Key, float>(key, "float");
    ExpectName<Key, double>(key, "double");
    ExpectName<Key, char>(key, "char");
    ExpectName<Key, std::string>(key, Text);
    ExpectName<Key, std::wstring>(key, WideText);
    ExpectName<Key, CbDateTime>(key, "class CbDateTime");
    ExpectName<Key, CbArray<unsigned char>>(key, "class CbArray<unsigned char>");
}

TEST(TypeNames, NodesOfEveryTableHaveTheirNames)
{
    ExpectNamesOfKinds<std::string>(Text);
    ExpectNamesOfKinds<unsigned int>("unsigned int");
    ExpectName<std::string, std::pair<std::string, std::unique_ptr<CDataReader>>>(
        Text, "struct std::pair<" + Text + "," + Unique("class Vellum::CDataReader") + " >");
    ExpectName<std::string, std::unique_ptr<CContainerReader>>(Text, Unique("class Vellum::CContainerReader"));
    ExpectName<std::string, std::unique_ptr<SJsonElement>>(Text, Unique("struct Vellum::SJsonElement"));
    ExpectName<unsigned int, std::pair<unsigned int, std::unique_ptr<CDataWriterBinary>>>(
        "unsigned int", "struct std::pair<unsigned int," + Unique("class Vellum::CDataWriterBinary") + " >");
    ExpectName<unsigned int, std::pair<unsigned int, std::unique_ptr<CContainerWriterBinary>>>(
        "unsigned int", "struct std::pair<unsigned int," + Unique("class Vellum::CContainerWriterBinary") + " >");
    ExpectName<ATL::CStringT<char>, unsigned int>("class ATL::CStringT<char>", "unsigned int");
}

TEST(TypeNames, TableOfJsonMembersIsSpelledInFull)
{
    using Members = CbMapEx<std::string, std::unique_ptr<SJsonElement>, 0, std::hash<std::string>,
                            std::equal_to<std::string>, CbMapPolicyPlexManager>;
    EXPECT_EQ(CbTypeName<Members>::Value.GetString(),
              "class CbMapEx<" + Text + "," + Unique("struct Vellum::SJsonElement") + ",0,struct std::hash<" + Text +
                  " >,struct std::equal_to<" + Text + " > >");
}

} // namespace
