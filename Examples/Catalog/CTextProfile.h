#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <Vellum/Vellum.h>

// How often lines of some length occur: a sequence of numbers. Element 0 counts the lines of up to 9 bytes, element 1
// those of 10 to 19, and so on; the last one also counts all that are longer.
class CLineLengths : public Vellum::ISerializableContainer
{
public:
    const char* GetTypeName() const override { return "LineLengths"; }
    void Write(Vellum::IContainerWriter& writer) const override;
    void Read(Vellum::IContainerReader& reader) override;

    void Count(std::size_t length);

    std::array<std::uint32_t, 13> counts{};
};

// What can be said about the first bytes of a file if it is taken as text.
class CTextProfile : public Vellum::ISerializable
{
public:
    const char* GetTypeName() const override { return "TextProfile"; }
    void Write(Vellum::IDataWriter& writer) const override;
    void Read(Vellum::IDataReader& reader) override;

    static CTextProfile Of(std::string_view text);

    std::uint32_t lineCount = 0;
    float blankShare = 0;           // share of the bytes that are blanks, tabs or ends of line
    double entropy = 0;             // bits per byte, 0 to 8
    std::uint8_t commonestByte = 0; // 0 if the text is empty
    signed char lineEnds = 0;       // 0 none, 1 LF, 2 CR LF, -1 both
    std::int16_t openBrackets = 0;  // brackets opened less brackets closed; negative if more are closed
    CLineLengths lineLengths;
};
