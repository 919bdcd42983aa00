#pragma once

#include <compare>
#include <memory>
#include <string>
#include <utility>

namespace Vellum
{

/// CName: a key or a type name of a CValue. It is a text that never changes.
///
/// - **Memory** Copies share the text, so that a name that very many fields have costs them no more than its place.
/// - **Threads** Any, as far as each has a copy of its own or none changes the one they have.
class CName
{
public:
    /// The empty name.
    CName() = default;

    /// @name A text
    /// The text of a name; null is not accepted.
    /// @{
    CName(std::string name) : text(name.empty() ? nullptr : std::make_shared<const std::string>(std::move(name))) {}
    CName(const char* name) : CName(std::string(name)) {}
    /// @}

    /// The text. It lives as long as one of the copies.
    const std::string& Get() const noexcept
    {
        static const std::string Empty;
        return text == nullptr ? Empty : *text;
    }

    /// The text.
    operator const std::string&() const noexcept { return Get(); }

    /// Whether the texts are the same.
    bool operator==(const CName& other) const noexcept { return Get() == other.Get(); }

    /// The order of the texts, byte by byte.
    std::strong_ordering operator<=>(const CName& other) const noexcept { return Get() <=> other.Get(); }

private:
    std::shared_ptr<const std::string> text; // null if it is empty
};

} // namespace Vellum
