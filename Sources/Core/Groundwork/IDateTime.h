#pragma once

#include "../Platform/Export.h"

/// IDateTime: a calendar time as seven 16-bit fields, by convention in UTC, behind getters and setters, so that a
/// client may keep dates in a class of its own. CbDateTime is the library's implementation.
///
/// - **Units** January is month 1, the first of a month is day 1, hours count from 0 to 23. Nothing is validated: a
///   date may hold month 13, and each conversion tells what it makes of that.
/// - **Threads** Told by the class that implements it.
class VELLUM_API IDateTime
{
public:
    virtual ~IDateTime();

    /// Copies the seven fields through the source's getters and this object's setters.
    virtual IDateTime& operator=(const IDateTime& other);

    /// @name GetYear ... GetMilliseconds
    /// One field, as it was set.
    /// @{
    virtual unsigned short GetYear() const = 0;
    virtual unsigned short GetMonth() const = 0;
    virtual unsigned short GetDay() const = 0;
    virtual unsigned short GetHour() const = 0;
    virtual unsigned short GetMinute() const = 0;
    virtual unsigned short GetSecond() const = 0;
    virtual unsigned short GetMilliseconds() const = 0;
    /// @}

    /// @name SetYear ... SetMilliseconds
    /// Sets one field, and no other. Any value is taken.
    /// @{
    virtual void SetYear(unsigned short value) = 0;
    virtual void SetMonth(unsigned short value) = 0;
    virtual void SetDay(unsigned short value) = 0;
    virtual void SetHour(unsigned short value) = 0;
    virtual void SetMinute(unsigned short value) = 0;
    virtual void SetSecond(unsigned short value) = 0;
    virtual void SetMilliseconds(unsigned short value) = 0;
    /// @}

protected:
    IDateTime() = default;
    IDateTime(const IDateTime&) = default;
};
