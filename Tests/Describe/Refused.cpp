#include <memory>
#include <string_view>
#include <variant>
#include <vector>

#include "Describe/Describe.h"

class CSecret
{
public:
    int Get() const { return number; }

private:
    int number = 0;
};

struct SNone
{
    explicit SNone(int) {}
    static constexpr auto Describe() { return Vellum::Fields("None"); }
};

class CDerived;
class CBase
{
public:
    static constexpr auto Describe() { return Vellum::Fields("Base").OneOf(Vellum::Alternative<CDerived>("derived")); }
    virtual ~CBase() = default;
};

class CDerived : public CBase
{
};

#if CASE == 1 // refused: CSecret: can't store this type
struct SDocument
{
    int number;
    std::vector<CSecret> list;
};
#endif

#if CASE == 2 // refused: int: can't store this type
struct SDocument
{
    int* pointer;
};
#endif

#if CASE == 3 // refused: string_view: can write this type, but not read it
struct SDocument
{
    std::string_view view;
};
#endif

#if CASE == 4 // refused: SNone: give it a default constructor
struct SDocument
{
    std::vector<SNone> list;
};
#endif

#if CASE == 5 // refused: SNone: give it a default constructor
struct SDocument
{
    std::unique_ptr<SNone> pointer;
};
#endif

#if CASE == 6 // refused: variant: have no name or the same one
struct SDocument
{
    std::variant<std::int32_t, int> variant;
};
#endif

#if CASE == 7 // refused: SDocument: more than 64 fields
struct SDocument
{
    char name[300];
};
#endif

#if CASE == 8 // refused: CDerived: no description but its base's
struct SDocument
{
    std::unique_ptr<CBase> pointer;
};
#endif

#if CASE == 9 // refused: SDocument: has a base class
struct SDocument : CSecret
{
    int number;
};
#endif

#if CASE == 10 // refused: int: The root of a document is an object or a sequence
using SDocument = int;
#endif

#if CASE == 11 // refused: SDocument: its description would never be used
struct SDocument : Vellum::ISerializable
{
    static constexpr auto Describe() { return Vellum::Fields("Document", Vellum::Field("a", &SDocument::a)); }
    const char* GetTypeName() const override { return "Document"; }
    void Write(Vellum::IDataWriter&) const override {}
    void Read(Vellum::IDataReader&) override {}
    int a = 0;
};
#endif

void Use(SDocument& document)
{
    Vellum::FromBinary(Vellum::ToBinary(document), document);
    Vellum::FromJson(Vellum::ToJson(document), document, Vellum::Strict);
}
