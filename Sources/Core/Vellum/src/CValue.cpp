#include "Vellum/CValue.h"

#include <charconv>
#include <concepts>
#include <cstring>

#include "Vellum/CDocumentException.h"

#include "Vellum/src/CBinaryWalker.h"
#include "Vellum/src/ValueContent.h"

namespace Vellum
{
namespace
{

const std::string NoName;
const std::vector<CValue::SField> NoFields;
const std::vector<CValue> NoElements;

} // namespace

const char* GetName(EValueKind kind)
{
    const char* const name = GetKindName(static_cast<std::uint8_t>(kind));
    return name != nullptr ? name : kind == EValueKind::Number ? "number" : "null";
}

CValue::CValue() noexcept : content(std::monostate()) {}
CValue::CValue(bool value) : content(value) {}
CValue::CValue(char value) : content(value) {}
CValue::CValue(unsigned char value) : content(value) {}
CValue::CValue(signed char value) : content(value) {}
CValue::CValue(std::uint16_t value) : content(value) {}
CValue::CValue(std::int16_t value) : content(value) {}
CValue::CValue(std::uint32_t value) : content(value) {}
CValue::CValue(std::int32_t value) : content(value) {}
CValue::CValue(std::uint64_t value) : content(value) {}
CValue::CValue(std::int64_t value) : content(value) {}
CValue::CValue(float value) : content(value) {}
CValue::CValue(double value) : content(value) {}
CValue::CValue(std::string value) : content(CBox<std::string>(std::move(value))) {}
CValue::CValue(std::wstring value) : content(CBox<std::wstring>(std::move(value))) {}
CValue::CValue(const CbDateTime& value) : content(CBox<CbDateTime>(value)) {}
CValue::CValue(Bytes value) : content(CBox<Bytes>(std::move(value))) {}
CValue::CValue(SNumber value) : content(CBox<SNumber>(std::move(value))) {}
CValue::CValue(Content content) : content(std::move(content)) {}

CValue CValue::Object(CName typeName) { return CValue(Content(CBox<SObject>({std::move(typeName)}))); }
CValue CValue::Sequence(CName typeName) { return CValue(Content(CBox<SSequence>({std::move(typeName)}))); }

CValue::CValue(const CValue& other) = default;
CValue::CValue(CValue&& other) noexcept : content(std::exchange(other.content, std::monostate())) {}
CValue& CValue::operator=(const CValue& other) { return *this = CValue(other); }
CValue& CValue::operator=(CValue&& other) noexcept
{
    content = std::exchange(other.content, std::monostate());
    return *this;
}
CValue::~CValue() = default;

const std::string& CValue::GetTypeName() const
{
    if (const auto* const object = Get<SObject>())
        return object->typeName;
    const auto* const sequence = Get<SSequence>();
    return sequence == nullptr ? NoName : sequence->typeName.Get();
}

void CValue::SetTypeName(CName name)
{
    if (auto* const object = std::get_if<CBox<SObject>>(&content))
        (**object).typeName = std::move(name);
    else
        (GetElements(), (*std::get<CBox<SSequence>>(content)).typeName = std::move(name));
}

const std::vector<CValue::SField>& CValue::GetFields() const
{
    const auto* const object = Get<SObject>();
    return object == nullptr ? NoFields : object->fields;
}

const std::vector<CValue>& CValue::GetElements() const
{
    const auto* const sequence = Get<SSequence>();
    return sequence == nullptr ? NoElements : sequence->elements;
}

// From here on the value may be changed, and is no longer that of its document.
std::vector<CValue::SField>& CValue::GetFields()
{
    auto* const object = std::get_if<CBox<SObject>>(&content);
    if (object == nullptr)
        throw CException(__FILE__, __LINE__, "Vellum::CValue::GetFields");
    (**object).texts.reset();
    return (**object).fields;
}

std::vector<CValue>& CValue::GetElements()
{
    auto* const sequence = std::get_if<CBox<SSequence>>(&content);
    if (sequence == nullptr)
        throw CException(__FILE__, __LINE__, "Vellum::CValue::GetElements");
    (**sequence).texts.reset();
    return (**sequence).elements;
}

void CValue::setTexts(Texts texts)
{
    if (auto* const object = std::get_if<CBox<SObject>>(&content))
        (**object).texts = std::move(texts);
    else if (auto* const sequence = std::get_if<CBox<SSequence>>(&content))
        (**sequence).texts = std::move(texts);
}

// ---- Comparison. ----

namespace
{

template <class T>
bool AreSame(const T& left, const T& right)
{
    if constexpr (std::floating_point<T>)
        return std::memcmp(&left, &right, sizeof left) == 0;
    else
        return left == right;
}

bool AreSame(const CbDateTime& left, const CbDateTime& right)
{
    return left.GetYear() == right.GetYear() && left.GetMonth() == right.GetMonth() &&
           left.GetDay() == right.GetDay() && left.GetHour() == right.GetHour() &&
           left.GetMinute() == right.GetMinute() && left.GetSecond() == right.GetSecond() &&
           left.GetMilliseconds() == right.GetMilliseconds();
}

} // namespace

bool CValue::operator==(const CValue& other) const
{
    const auto isSame = [&]<class T>(const T& value)
    {
        const T& second = std::get<T>(other.content);
        if constexpr (std::same_as<T, CBox<SObject>>)
            return (*value).typeName == (*second).typeName && (*value).fields == (*second).fields;
        else if constexpr (std::same_as<T, CBox<SSequence>>)
            return (*value).typeName == (*second).typeName && (*value).elements == (*second).elements;
        else if constexpr (requires { *value; })
            return AreSame(*value, *second);
        else
            return AreSame(value, second);
    };
    return GetKind() == other.GetKind() && std::visit(isSame, content);
}

// ---- Paths: each function takes what it has gone from the front. ----

namespace
{

// The field whose key the path begins with, the longest of them, and of equal ones the first.
const CValue* TakeField(const std::vector<CValue::SField>& fields, std::string_view& path, bool isFirst)
{
    if (!isFirst && !path.starts_with('.'))
        return nullptr;
    const std::string_view rest = path.substr(isFirst ? 0 : 1);
    const CValue::SField* found = nullptr;
    for (const CValue::SField& field : fields)
    {
        const std::string& key = field.key;
        const std::size_t size = key.size();
        if (rest.starts_with(key) && (rest.size() == size || rest[size] == '.' || rest[size] == '[') &&
            (found == nullptr || size > found->key.Get().size()))
            found = &field;
    }
    if (found == nullptr)
        return nullptr;
    path = rest.substr(found->key.Get().size());
    return &found->value;
}

// `[3]`. False if there is no such thing in front.
bool TakeIndex(std::string_view& path, std::size_t& index)
{
    const char* const end = path.data() + path.size();
    if (!path.starts_with('['))
        return false;
    const auto [stop, error] = std::from_chars(path.data() + 1, end, index);
    if (error != std::errc() || stop == end || *stop != ']')
        return false;
    path.remove_prefix(static_cast<std::size_t>(stop - path.data()) + 1);
    return true;
}

const CValue* TakeElement(const std::vector<CValue>& elements, std::string_view& path)
{
    std::string_view rest = path;
    std::size_t index = 0;
    if (!TakeIndex(rest, index) || index >= elements.size())
        return nullptr;
    path = rest;
    return &elements[index];
}

} // namespace

// As far as there is something.
CValue::SWay CValue::go(std::string_view path) const
{
    SWay way{nullptr, this, path};
    while (!way.rest.empty())
    {
        const CValue& value = *way.value;
        const CValue* const next = value.GetKind() == EValueKind::Sequence
                                       ? TakeElement(value.GetElements(), way.rest)
                                       : TakeField(value.GetFields(), way.rest, way.outer == nullptr);
        if (next == nullptr)
            break;
        way.outer = std::exchange(way.value, next);
    }
    return way;
}

const CValue* CValue::Find(std::string_view path) const
{
    const SWay way = go(path);
    return way.rest.empty() ? way.value : nullptr;
}

CValue* CValue::Find(std::string_view path)
{
    setTexts(nullptr);
    return const_cast<CValue*>(std::as_const(*this).Find(path));
}

CValue& CValue::Set(std::string_view path, CValue value)
{
    setTexts(nullptr);
    const SWay way = go(path);
    CValue& last = const_cast<CValue&>(*way.value);
    if (way.rest.empty())
        return last = std::move(value);

    std::string_view rest = way.rest;
    std::size_t index = 0;
    if (last.GetKind() == EValueKind::Sequence && TakeIndex(rest, index) && rest.empty() &&
        index == last.GetElements().size())
        return last.GetElements().emplace_back(std::move(value));

    const bool isKey = way.outer == nullptr || rest.starts_with('.');
    const std::string_view key = rest.substr(way.outer == nullptr || !isKey ? 0 : 1);
    if (last.GetKind() == EValueKind::Object && isKey && key.find_first_of(".[") == std::string_view::npos)
        return last.GetFields().emplace_back(SField{std::string(key), std::move(value)}).value;
    throw CDocumentException(__FILE__, __LINE__, "Vellum::CValue::Set",
                             {"There is nothing that could hold a value at this place.", std::string(path)});
}

bool CValue::Remove(std::string_view path)
{
    setTexts(nullptr);
    const SWay way = go(path);
    if (!way.rest.empty() || way.outer == nullptr)
        return false;
    CValue& outer = const_cast<CValue&>(*way.outer);
    if (outer.GetKind() == EValueKind::Sequence)
        outer.GetElements().erase(outer.GetElements().begin() + (way.value - outer.GetElements().data()));
    else
        std::erase_if(outer.GetFields(), [&](const SField& field) { return &field.value == way.value; });
    return true;
}

} // namespace Vellum
