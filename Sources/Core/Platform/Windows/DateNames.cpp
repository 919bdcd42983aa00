#include "Platform/DateNames.h"

#include <array>
#include <windows.h>

namespace Vellum::Platform
{

namespace
{

const wchar_t* GetPicture(EDateName which) noexcept
{
    switch (which)
    {
    case EDateName::Weekday:
        return L"dddd";
    case EDateName::Month: // not inside a date, so it stands as it does alone
        return L"MMMM";
    case EDateName::AbbreviatedMonth:
        return L"MMM";
    }
    return nullptr;
}

EDateNameResult ToResult(DWORD error) noexcept
{
    switch (error)
    {
    case ERROR_INVALID_PARAMETER:
        return EDateNameResult::InvalidParameter;
    case ERROR_INSUFFICIENT_BUFFER:
        return EDateNameResult::InsufficientBuffer;
    case ERROR_INVALID_FLAGS:
        return EDateNameResult::InvalidFlags;
    default:
        return EDateNameResult::OtherFailure;
    }
}

} // namespace

EDateNameResult GetDateName(const SSystemTime& date, EDateName which, std::wstring& name)
{
    SSystemTime day = {};
    if (!GetDay(date, day))
        return EDateNameResult::InvalidParameter;
    const wchar_t* const picture = GetPicture(which);
    if (picture == nullptr)
        return EDateNameResult::InvalidFlags;

    const SYSTEMTIME fields = {day.year, day.month, day.dayOfWeek, day.day, 0, 0, 0, 0};
    std::array<wchar_t, 1024> text;
    const int size = ::GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &fields, picture, text.data(),
                                       static_cast<int>(text.size()), nullptr);
    if (size == 0)
        return ToResult(::GetLastError());
    name.assign(text.data(), static_cast<std::size_t>(size) - 1); // without the NUL
    return EDateNameResult::Success;
}

} // namespace Vellum::Platform
