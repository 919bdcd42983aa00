#include "Vellum/src/TypeNames.h"

#include "Groundwork/CbArray.h"
#include "Groundwork/CbExceptions.h"
#include "Groundwork/CbMapEx.h"

#include "Support/Testing.h"

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
template <class Key, class... Value>
void ExpectNamesOfKinds(const std::string& key, std::initializer_list<std::string> names)
{
    const std::string* name = names.begin();
    (ExpectName<Key, Value>(key, *name++), ...);
}

template <class Key>
void ExpectNamesOfAllKinds(const std::string& key)
{
    ExpectNamesOfKinds<Key, bool, unsigned char, signed char, std::uint16_t, std::int16_t, std::uint32_t, std::int32_t,
                       std::uint64_t, std::int64_t, float, double, char, std::string, std::wstring, CbDateTime,
                       CbArray<unsigned char>>(key, {"bool", "unsigned char", "signed char", "unsigned short", "short",
                                                     "unsigned int", "int", "unsigned __int64", "__int64", "float",
                                                     "double", "char", Text, WideText, "class CbDateTime",
                                                     "class CbArray<unsigned char>"});
}

TEST(TypeNames, NodesOfEveryTableHaveTheirNames)
{
    ExpectNamesOfAllKinds<std::string>(Text);
    ExpectNamesOfAllKinds<unsigned int>("unsigned int");
    ExpectName<std::string, std::pair<std::string, std::unique_ptr<CDataReader>>>(
        Text, "struct std::pair<" + Text + "," + Unique("class Vellum::CDataReader") + " >");
    ExpectName<std::string, std::unique_ptr<CContainerReader>>(Text, Unique("class Vellum::CContainerReader"));
    ExpectName<unsigned int, std::pair<unsigned int, std::unique_ptr<CDataWriterBinary>>>(
        "unsigned int", "struct std::pair<unsigned int," + Unique("class Vellum::CDataWriterBinary") + " >");
    ExpectName<unsigned int, std::pair<unsigned int, std::unique_ptr<CContainerWriterBinary>>>(
        "unsigned int", "struct std::pair<unsigned int," + Unique("class Vellum::CContainerWriterBinary") + " >");
    ExpectName<std::string, std::unique_ptr<SJsonElement>>(Text, Unique("struct Vellum::SJsonElement"));
    ExpectName<ATL::CStringT<char>, unsigned int>("class ATL::CStringT<char>", "unsigned int");
}

TEST(TypeNames, ATableOfASharedPoolTellsItsWholeName)
{
    using Table = CbMapEx<std::string, unsigned int, 0, std::hash<std::string>, std::equal_to<std::string>,
                          CbMapPolicyPlexManager>;
    Table table;
    table.FindOrInsert("a");
    const std::string name = "CbMapPolicyPlexManager<class CbMapEx<" + Text + ",unsigned int,0,struct std::hash<" +
                             Text + " >,struct std::equal_to<" + Text + " > >,struct CbMapTypes::SAssociation<" + Text +
                             ",unsigned int>,0,0,unsigned int>::SetPlexManager";
    EXPECT_RAISES(CbExceptionContainer, name.c_str(), table.SetPlexManager(std::make_shared<Table::Pool>()));
}

} // namespace
