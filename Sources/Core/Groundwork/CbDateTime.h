#pragma once

#include <concepts>
#include <cstdint>
#include <string>

#include "../Platform/CStringT.h"
#include "../Platform/Export.h"

#include "Groundwork/IDateTime.h"

/// CbDateTime: the library's own IDateTime. A calendar time without a zone, by convention UTC.
///
/// - **Fields** the seven of IDateTime, none of them validated, and the day of week (Sunday is 0), which no getter
///   shows. It comes from the clock and from a tick count, is copied between objects of this class, and nothing reads
///   it.
/// - **Text** "2024-03-01T10:20:30" or with a blank in place of the T. Milliseconds have no place in it.
/// - **Ticks** of 100 nanoseconds since 1601-01-01 00:00 UTC; milliseconds survive.
/// - **Errors** CbExceptionConversion, as told at each operation.
/// - **Threads** A plain value: it belongs to one thread at a time.
class VELLUM_API CbDateTime : public IDateTime
{
public:
    /// The present UTC time, to the millisecond.
    CbDateTime();

    /// Copies all eight fields.
    CbDateTime(const CbDateTime&) = default;
    CbDateTime& operator=(const CbDateTime& other)
    {
        fields = other.fields;
        return *this;
    }

    /// @name CbDateTime, operator=
    /// Copies the seven fields, through the getters; a new object has day of week 0, an assignment leaves it as it was.
    /// @{
    CbDateTime(const IDateTime& other);
    CbDateTime& operator=(const IDateTime& other) override;
    /// @}

    /// @name CbDateTime, operator=
    /// Parses a zero-terminated text. It must have 19 bytes or more, "-" in the fifth and eighth, ":" in the fourteenth
    /// and seventeenth, and a blank or a "T" in the eleventh place, and is then scanned as by sscanf in the C locale
    /// with "%hu-%hu-%hu %hu:%hu:%hu", or with a "T" for the blank. So ranges aren't tested, a number may have blanks
    /// and a sign in front, of a larger one the low 16 bits stay, and what follows the seconds is ignored. Day of week
    /// and milliseconds become 0.
    ///
    /// Raises CbExceptionConversion ("CbDateTime::CbDateTime", "CbDateTime::operator =") for any other text and for
    /// null. An object that was assigned to may have changed then: once the signs stand right, day of week and
    /// milliseconds are 0, and the fields that came before the scan stopped are set.
    /// @{
    explicit CbDateTime(const char* text);
    CbDateTime& operator=(const char* text);
    /// @}

    /// 0 would be taken for a text that is null.
    template <std::integral T>
    CbDateTime& operator=(T) = delete;

    /// The date of a tick count; what is below a millisecond is dropped. A count with the top bit set, which no
    /// calendar reaches, gives 1601-01-01 00:00:00.000.
    explicit CbDateTime(std::uint64_t ticks);

    /// The tick count, or 0 if the fields are no valid date of the years 1601 to 30827.
    std::uint64_t ToFileTime() const;

    /// @name ToString
    /// The date in a format of one-letter specifiers. A backslash gives the character behind it as it stands, and so
    /// does every other character itself: "Y-m-dTH:i:s" is 2024-03-01T10:20:30.
    ///
    /// | | | | |
    /// |---|---|---|---|
    /// | Y | year, four digits | H | hour, two digits |
    /// | y | its last two digits | G | hour |
    /// | m | month, two digits | h, g | the same modulo 12 |
    /// | n | month | i | minute, two digits |
    /// | F | month, its name | s | second, two digits |
    /// | M | month, abbreviated | v | milliseconds, three digits |
    /// | d | day, two digits | A | AM up to hour 12, PM from hour 13 |
    /// | j | day | a | am up to hour 12, pm from hour 13 |
    /// | l | weekday | t | number of days in the month |
    /// | D | its first three characters |  |  |
    ///
    /// Narrow text, format and result, is UTF-8; wide text is UTF-16. What is ill-formed in the wide format becomes
    /// U+FFFD. Names are in the language of the user's environment (LC_ALL, LC_TIME, LANG); for fields that are no
    /// valid date of the years 1601 to 30827, "ERROR_INVALID_PARAMETER" stands in the place of the name.
    ///
    /// With `localTime`, the fields are taken as UTC and shown in the time zone of the process; if they can't be
    /// converted, they are shown as they are.
    ///
    /// Raises CbExceptionConversion ("CbDateTime::ToString") for "t" when the month isn't 1 to 12, and for null.
    /// @{
    ATL::CStringT<char> ToString(const char* format, bool localTime = false) const;
    std::wstring ToString(const wchar_t* format, bool localTime = false) const;
    /// @}

    unsigned short GetYear() const override { return fields.year; }
    unsigned short GetMonth() const override { return fields.month; }
    unsigned short GetDay() const override { return fields.day; }
    unsigned short GetHour() const override { return fields.hour; }
    unsigned short GetMinute() const override { return fields.minute; }
    unsigned short GetSecond() const override { return fields.second; }
    unsigned short GetMilliseconds() const override { return fields.milliseconds; }

    void SetYear(unsigned short value) override { fields.year = value; }
    void SetMonth(unsigned short value) override { fields.month = value; }
    void SetDay(unsigned short value) override { fields.day = value; }
    void SetHour(unsigned short value) override { fields.hour = value; }
    void SetMinute(unsigned short value) override { fields.minute = value; }
    void SetSecond(unsigned short value) override { fields.second = value; }
    void SetMilliseconds(unsigned short value) override { fields.milliseconds = value; }

private:
    bool parse(const char* text);

    // What the system's calendar time consists of, in its order.
    struct SFields
    {
        std::uint16_t year;
        std::uint16_t month;
        std::uint16_t dayOfWeek;
        std::uint16_t day;
        std::uint16_t hour;
        std::uint16_t minute;
        std::uint16_t second;
        std::uint16_t milliseconds;
    };

    SFields fields;
};
