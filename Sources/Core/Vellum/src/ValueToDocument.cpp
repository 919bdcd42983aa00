#include <algorithm>
#include <charconv>
#include <concepts>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Groundwork/CbDateTime.h"

#include "Vellum/CDocumentException.h"
#include "Vellum/CValue.h"
#include "Vellum/CWriterJson.h"
#include "Vellum/CWriterXml.h"
#include "Vellum/Encodings.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Vellum/src/CLocaleScope.h"
#include "Vellum/src/IJsonTokens.h"
#include "Vellum/src/JsonWords.h"
#include "Vellum/src/KeyRules.h"
#include "Vellum/src/Limits.h"
#include "Vellum/src/NumberText.h"
#include "Vellum/src/SFault.h"
#include "Vellum/src/ValueContent.h"
#include "Vellum/src/WriteKnown.h"
#include "Vellum/src/WriteThrough.h"
#include "Vellum/src/XmlNames.h"

// A value is looked through for what its format can't hold, and then handed to the format's writer by clients that are
// made of it on the way.

namespace Vellum
{
namespace
{

enum class ETarget : std::uint8_t
{
    Binary,
    Json,
    Xml
};

// ---- Numbers of JSON, in binary documents. ----

// The kinds that the numbers of one sequence may have, each of which holds more than the one before.
EValueKind GetNumberKind(const CValue::SNumber& number)
{
    const char* const begin = number.text.data();
    const char* const end = begin + number.text.size();
    const auto fits = [&](auto integer)
    {
        const auto [stop, error] = std::from_chars(begin, end, integer);
        return stop == end && error == std::errc();
    };
    return fits(std::int64_t()) ? EValueKind::Int64 : fits(std::uint64_t()) ? EValueKind::UInt64 : EValueKind::Double;
}

EValueKind GetCommonKind(const std::vector<CValue>& elements)
{
    bool hasNegative = false;
    EValueKind common = EValueKind::Int64;
    for (const CValue& element : elements)
        if (const auto* const number = element.Get<CValue::SNumber>())
        {
            const EValueKind kind = GetNumberKind(*number);
            hasNegative = hasNegative || number->text.starts_with('-');
            common = common == EValueKind::Double || kind == EValueKind::Int64 ? common : kind;
        }
    return common == EValueKind::UInt64 && hasNegative ? EValueKind::Double : common;
}

template <class T>
T ParseInteger(const std::string& text)
{
    T value{};
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// ---- What a format can't hold. ----

[[noreturn]] void Refuse(std::string reason) { throw SFault{0, std::move(reason)}; }

const char* NameOf(ETarget target)
{
    return target == ETarget::Binary ? "A binary document" : target == ETarget::Json ? "JSON" : "XML";
}

class CCheck
{
public:
    explicit CCheck(ETarget target) : target(target) {}

    // Throws SFault.
    void Check(const CValue& value);

private:
    void checkContent(const CValue& value);
    void checkFields(const CValue& object);
    void checkElements(const CValue& sequence);
    void checkKey(const std::string& key) const;
    void checkDistinct(const std::vector<CValue::SField>& fields) const;
    void checkTypeName(const CValue& value) const;
    void checkText(const std::string& text) const;
    void checkChar(char character) const;

    ETarget target;
    std::uint32_t depth = 0;
};

void CCheck::checkText(const std::string& text) const
{
    if (text.find('\0') != std::string::npos)
        Refuse("A text has a zero byte, where it would end.");
    if (target == ETarget::Xml && Encodings::ToUTF8(Encodings::FromUTF8(text)) != text)
        Refuse("XML can't hold a text that isn't UTF-8.");
}

void CCheck::checkChar(char character) const
{
    if (target == ETarget::Xml && (std::string_view("<&\0", 3).find(character) != std::string_view::npos ||
                                   static_cast<unsigned char>(character) >= 0x80))
        Refuse("XML can't hold this char.");
}

void CCheck::checkKey(const std::string& key) const
{
    if (key.find('\0') != std::string::npos)
        Refuse("The key has a zero byte.");
    if (target == ETarget::Json && !FitsJson(key))
        Refuse("The key can't be written in JSON.");
    if (target == ETarget::Xml && !FitsXml(key))
        Refuse("The key is no element name of XML.");
}

// In a binary document a key may stand there once in each kind.
void CCheck::checkDistinct(const std::vector<CValue::SField>& fields) const
{
    std::vector<std::string> keys;
    keys.reserve(fields.size());
    for (const CValue::SField& field : fields)
        if (target == ETarget::Binary)
            keys.push_back(std::to_string(static_cast<int>(field.value.GetKind())) + ' ' + field.key.Get());
        else
            keys.push_back(target == ETarget::Xml ? FoldKey(field.key) : field.key.Get());
    std::ranges::sort(keys);
    if (const auto twin = std::ranges::adjacent_find(keys); twin != keys.end())
        Refuse(std::string(NameOf(target)) + " can't hold two fields that are called \"" +
               twin->substr(target == ETarget::Binary ? twin->find(' ') + 1 : 0) + "\".");
}

void CCheck::checkTypeName(const CValue& value) const
{
    const std::string& name = value.GetTypeName();
    if (name.find('\0') != std::string::npos)
        Refuse("The type name has a zero byte.");
    if (target == ETarget::Xml && !name.empty() && !FitsXml(ToElementName(name)))
        Refuse("The type name \"" + name + "\" is no element name of XML.");
}

void CCheck::checkFields(const CValue& object)
{
    checkDistinct(object.GetFields());
    for (const auto& [key, value] : object.GetFields())
        UnderKey(key.Get(),
                 [&, &key = key, &value = value]
                 {
                     checkKey(key);
                     Check(value);
                 });
}

void CCheck::checkElements(const CValue& sequence)
{
    const std::vector<CValue>& elements = sequence.GetElements();
    for (std::size_t index = 0; index < elements.size(); ++index)
        UnderIndex(index,
                   [&]
                   {
                       const CValue& element = elements[index];
                       if (target == ETarget::Binary && element.GetKind() != elements.front().GetKind())
                           Refuse(std::string("A binary document can't hold ") + GetName(element.GetKind()) +
                                  " in a sequence of " + GetName(elements.front().GetKind()) + ".");
                       if (target != ETarget::Json && element.GetKind() == EValueKind::Null)
                           Refuse(std::string(NameOf(target)) + " can't hold a null in a sequence.");
                       Check(element);
                   });
}

void CCheck::Check(const CValue& value)
{
    if (++depth > MaxDepth && value.IsNested())
        Refuse("There are more than 1024 levels.");
    checkContent(value);
    --depth;
}

void CCheck::checkContent(const CValue& value)
{
    switch (value.GetKind())
    {
    case EValueKind::Object:
        checkTypeName(value);
        return checkFields(value);
    case EValueKind::Sequence:
        checkTypeName(value);
        return checkElements(value);
    case EValueKind::Text:
        return checkText(*value.Get<std::string>());
    case EValueKind::WideText:
        if (value.Get<std::wstring>()->find(L'\0') != std::wstring::npos)
            Refuse("A text has a zero in it, where it would end.");
        return;
    case EValueKind::Char:
        return checkChar(*value.Get<char>());
    case EValueKind::Number:
        if (!IsJsonNumber(value.Get<CValue::SNumber>()->text))
            Refuse("\"" + value.Get<CValue::SNumber>()->text + "\" is no number.");
        return;
    default:
        return;
    }
}

} // namespace

// ---- Clients of the writers. ----

// CValueWriter: hands a value that was checked to a writer of fields, with its key, or of elements.
class CValueWriter
{
public:
    explicit CValueWriter(ETarget target) : target(target) {}

    template <class Writer>
    void WriteField(Writer& writer, const CValue::SField& field) const
    {
        const auto* const number = field.value.Get<CValue::SNumber>();
        write(writer, field.value, number == nullptr ? EValueKind::Null : GetNumberKind(*number),
              field.key.Get().c_str());
    }

    template <class Writer>
    void WriteElements(Writer& writer, const std::vector<CValue>& elements) const
    {
        const EValueKind numbers = target == ETarget::Binary ? GetCommonKind(elements) : EValueKind::Null;
        for (const CValue& element : elements)
            write(writer, element, numbers);
    }

    // As a root.
    static const CValue::Texts& GetTexts(const CValue& value)
    {
        const auto* const object = value.Get<CValue::SObject>();
        return object != nullptr ? object->texts : value.Get<CValue::SSequence>()->texts;
    }
    template <class Body>
    void WithClient(const CValue& value, const Body& body, const char* unnamed = "") const;

private:
    // What a field or an element of a sequence is called that has no name of its own.
    const char* nameOfPart(const char* key) const { return target == ETarget::Xml ? "" : key; }
    const char* nameOfPart() const { return target == ETarget::Xml ? SequenceElementName.data() : ""; }

    template <class Writer, class... Key>
    void write(Writer& writer, const CValue& value, EValueKind numbers, Key... key) const;
    template <class Writer, class... Key>
    void writeNumber(Writer& writer, const std::string& text, EValueKind numbers, Key... key) const;
    template <class Writer>
    static void writeToken(Writer& writer, std::string_view token, const char* key = nullptr)
    {
        dynamic_cast<IJsonTokens&>(writer).WriteToken(key, token);
    }

    ETarget target;
};

namespace
{

class CObjectClient final : public ISerializable
{
public:
    CObjectClient(const CValueWriter& valueWriter, const CValue& value, const char* typeName)
        : valueWriter(valueWriter), value(value), typeName(typeName)
    {
    }
    const char* GetTypeName() const override { return typeName; }
    void Write(IDataWriter& writer) const override
    {
        for (const CValue::SField& field : value.GetFields())
            valueWriter.WriteField(writer, field);
    }
    void Read(IDataReader&) override {}

private:
    const CValueWriter& valueWriter;
    const CValue& value;
    const char* typeName;
};

class CSequenceClient final : public ISerializableContainer
{
public:
    CSequenceClient(const CValueWriter& valueWriter, const CValue& value, const char* typeName)
        : valueWriter(valueWriter), value(value), typeName(typeName)
    {
    }
    const char* GetTypeName() const override { return typeName; }
    void Write(IContainerWriter& writer) const override { valueWriter.WriteElements(writer, value.GetElements()); }
    void Read(IContainerReader&) override {}

private:
    const CValueWriter& valueWriter;
    const CValue& value;
    const char* typeName;
};

bool HasContent(const CValue& value)
{
    return !value.GetElements().empty() || std::ranges::any_of(value.GetFields(), [](const CValue::SField& field)
                                                               { return field.value.GetKind() != EValueKind::Null; });
}

} // namespace

// XML needs a name for everything, and takes an element of a sequence that is called like its values for one of them if
// there is nothing in it. A sequence in a binary document has a name in the string table if it is a field, though
// nothing refers to it: its key is there anyway.
template <class Body>
void CValueWriter::WithClient(const CValue& value, const Body& body, const char* unnamed) const
{
    const bool isObject = value.GetKind() == EValueKind::Object;
    const char* typeName = value.GetTypeName().c_str();
    if (const bool hasNone = *typeName == '\0'; hasNone && target == ETarget::Xml)
        typeName = *unnamed != '\0' && HasContent(value) ? unnamed : isObject ? "object" : "sequence";
    else if (hasNone && !isObject)
        typeName = unnamed;
    isObject ? body(CObjectClient(*this, value, typeName)) : body(CSequenceClient(*this, value, typeName));
}

template <class Writer, class... Key>
void CValueWriter::writeNumber(Writer& writer, const std::string& text, EValueKind numbers, Key... key) const
{
    if (target == ETarget::Json)
        writeToken(writer, text, key...);
    else if (target == ETarget::Xml)
        writer.Write(key..., text);
    else if (numbers == EValueKind::Int64)
        writer.Write(key..., ParseInteger<std::int64_t>(text));
    else if (numbers == EValueKind::UInt64)
        writer.Write(key..., ParseInteger<std::uint64_t>(text));
    else
    {
        const CLocaleScope scope;
        writer.Write(key..., Conversion::ViewToDouble(text));
    }
}

template <class Writer, class... Key>
void CValueWriter::write(Writer& writer, const CValue& value, EValueKind numbers, Key... key) const
{
    const auto put = [&]<class T>(const T& held)
    {
        if constexpr (std::same_as<T, std::monostate>)
        {
            if (target == ETarget::Json)
                writeToken(writer, "null", key...);
        }
        else if constexpr (std::same_as<T, CValue::CBox<CValue::SNumber>>)
            writeNumber(writer, (*held).text, numbers, key...);
        else if constexpr (std::same_as<T, CValue::CBox<CValue::Bytes>>)
            writer.Write(key..., (*held).size(), (*held).data());
        else if constexpr (std::same_as<T, CValue::CBox<CValue::SObject>> ||
                           std::same_as<T, CValue::CBox<CValue::SSequence>>)
            WithClient(
                value, [&](const auto& client) { writer.Write(key..., client); }, nameOfPart(key...));
        else if constexpr (requires { *held; })
            writer.Write(key..., *held);
        else
            writer.Write(key..., held);
    };
    std::visit(put, value.content);
}

namespace
{

void CheckFor(ETarget target, const CValue& root, const char* function)
{
    try
    {
        if (!root.IsNested())
            Refuse("A document is an object or a sequence.");
        CCheck(target).Check(root);
    }
    catch (const SFault& fault)
    {
        throw CDocumentException(__FILE__, __LINE__, function, {fault.reason, fault.path});
    }
}

template <class Writer>
void WriteText(std::ostringstream& stream, ETarget target, const CValue& root)
{
    CValueWriter(target).WithClient(root, [&](const auto& client) { Writer(stream).Write(client); });
}

template <class Writer>
void PutText(std::ostream& stream, ETarget target, const CValue& root, const char* function)
{
    CheckFor(target, root, function);
    WriteThrough(stream, [&](std::ostringstream& own) { WriteText<Writer>(own, target, root); });
}

template <class Writer>
std::string MakeText(ETarget target, const CValue& root, const char* function)
{
    CheckFor(target, root, function);
    std::ostringstream stream;
    WriteText<Writer>(stream, target, root);
    return std::move(stream).str();
}

} // namespace

void CValue::ToBinary(CbStreamWriteBinary& stream) const
{
    CheckFor(ETarget::Binary, *this, "Vellum::CValue::ToBinary");
    const Texts& texts = CValueWriter::GetTexts(*this);
    const std::span<const std::string> known = texts == nullptr ? std::span<const std::string>() : *texts;
    CValueWriter(ETarget::Binary).WithClient(*this, [&](const auto& client) { WriteKnown(stream, client, known); });
}

void CValue::ToJson(std::ostream& stream) const
{
    PutText<CWriterJson>(stream, ETarget::Json, *this, "Vellum::CValue::ToJson");
}

void CValue::ToXml(std::ostream& stream) const
{
    PutText<CWriterXml>(stream, ETarget::Xml, *this, "Vellum::CValue::ToXml");
}

std::string CValue::ToJson() const { return MakeText<CWriterJson>(ETarget::Json, *this, "Vellum::CValue::ToJson"); }
std::string CValue::ToXml() const { return MakeText<CWriterXml>(ETarget::Xml, *this, "Vellum::CValue::ToXml"); }

} // namespace Vellum
