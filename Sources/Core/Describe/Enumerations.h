#pragma once

#include <string>
#include <type_traits>

#include "Describe/Values.h"

/// @file
/// Enumerations: numbers of the size and sign of the underlying type, or texts if the names are listed.
namespace Vellum::Describing
{

template <class T>
constexpr auto FindNumber()
{
    using Underlying = std::underlying_type_t<T>;
    if constexpr (std::same_as<Underlying, bool>)
        return false;
    else
        return IntegerOf<Underlying>();
}

template <class T>
struct SNumbered : SStoredAs<T, decltype(FindNumber<T>())>
{
};

template <class T>
struct SNamed
{
    static constexpr EElement Element = EElement::Text;

    template <class Out>
    static void Write(const T& value, const Out& out)
    {
        for (const SName<T>& entry : DescriptionOf<T>.list)
            if (entry.value == value)
                return WriteValue(std::string(entry.name), out);
        RaiseAt(out.GetPlace(),
                "The value " + std::to_string(static_cast<std::underlying_type_t<T>>(value)) + " has no name.");
    }

    /// A name that isn't listed leaves the value as it was.
    template <class In>
    static bool Read(T& value, const In& in)
    {
        std::string name;
        if (!ReadValue(name, in))
            return false;
        for (const SName<T>& entry : DescriptionOf<T>.list)
            if (name == entry.name)
            {
                value = entry.value;
                return true;
            }
        if constexpr (In::IsStrict)
            RaiseAt(in.GetPlace(), "No value has the name \"" + name + "\".");
        return true;
    }
};

template <class T>
struct SStored<T, EStorage::Enumeration> : std::conditional_t<Named<T>, SNamed<T>, SNumbered<T>>
{
};

} // namespace Vellum::Describing
