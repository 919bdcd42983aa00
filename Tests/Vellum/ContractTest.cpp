#include <type_traits>

#include "Vellum/Vellum.h"

#include "Vellum/src/KindOperations.h"

#include "Support/Clients.h"
#include "Support/Testing.h"

namespace
{

// Notes which of the eighteen operations a call lands in.
template <class T>
void Note(std::string& log, const T& value)
{
    if constexpr (std::is_same_v<T, std::string>)
        log += "text:" + value;
    else if constexpr (std::is_same_v<T, std::wstring>)
        log += "wide:" + std::to_string(value.size());
    else if constexpr (std::is_same_v<T, bool>)
        log += "bool";
    else if constexpr (std::is_integral_v<T>)
        log += (std::is_signed_v<T> ? "int" : "uint") + std::to_string(8 * sizeof(T));
    log += ' ';
}

class CNotingWriter final : public Vellum::CWriteOperations<CNotingWriter, Vellum::IDataWriter, const char*>
{
public:
    std::string log;
    void writeValue(const char* key, const auto& value) { (log += key, Note(log, value)); }
};

class CNotingContainerWriter final : public Vellum::CWriteOperations<CNotingContainerWriter, Vellum::IContainerWriter>
{
public:
    std::string log;
    void writeValue(const auto& value) { Note(log, value); }
};

TEST(Contract, NaturalCallsLandInTheKindThatTheySay)
{
    CNotingWriter writer;
    WriteFields(writer, "a=", "text", "b=", L"wide", "c=", true, "d=", 1L, "e=", 1UL, "f=", 1LL, "g=", 1ULL, "h=", 1,
                "i=", 1U);
    EXPECT_EQ(writer.log, "a=text:text b=wide:4 c=bool d=int64 e=uint64 f=int64 g=uint64 h=int32 i=uint32 ");

    CNotingContainerWriter container;
    ElementsOf("text", L"wide", 1LL, 1ULL).Write(container);
    container.Write(std::vector<bool>{true}[0]);
    EXPECT_EQ(container.log, "text:text wide:4 int64 uint64 bool ");
}

} // namespace
