#include "Groundwork/IDateTime.h"

IDateTime::~IDateTime() = default;

IDateTime& IDateTime::operator=(const IDateTime& other)
{
    if (&other != this)
    {
        SetYear(other.GetYear());
        SetMonth(other.GetMonth());
        SetDay(other.GetDay());
        SetHour(other.GetHour());
        SetMinute(other.GetMinute());
        SetSecond(other.GetSecond());
        SetMilliseconds(other.GetMilliseconds());
    }
    return *this;
}
