#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "../Platform/Export.h"

#include "Groundwork/NaturalArguments.h"

#include "Vellum/CName.h"

class CbDateTime;
class CbStreamReadBinary;
class CbStreamWriteBinary;

namespace Vellum
{

/// What a CValue is. The first eighteen are the kinds of the contract, each with its tag in binary documents; the last
/// two come from JSON.
enum class EValueKind : std::uint8_t
{
    Bool,     ///< bool
    Char,     ///< char: a character
    UInt8,    ///< unsigned char: a number
    Int8,     ///< signed char: a number
    UInt16,   ///< std::uint16_t
    Int16,    ///< std::int16_t
    UInt32,   ///< std::uint32_t
    Int32,    ///< std::int32_t
    UInt64,   ///< std::uint64_t
    Int64,    ///< std::int64_t
    Float,    ///< float
    Double,   ///< double
    Text,     ///< std::string
    WideText, ///< std::wstring
    Date,     ///< CbDateTime
    Blob,     ///< CValue::Bytes
    Object,   ///< fields
    Sequence, ///< elements
    Number,   ///< CValue::SNumber: a number of JSON, as it is spelled there
    Null      ///< nothing: `null` of JSON, and a CValue that was made of nothing
};

/// A kind in words, as in `int32` or `wide text`. A constant.
VELLUM_API const char* GetName(EValueKind kind);

/// CValue: what a document says, without the classes that it was made of: a value of any kind, an object with its
/// fields or a sequence with its elements, all the way down. It is a plain value: copies are deep, and a tree is made,
/// looked at and changed by ordinary means.
///
///     CValue order = CValue::FromBinary(stream);
///     order.Set("lines[0].price", 2.5);
///     std::cout << order.ToJson();
///
/// | From | Kinds |
/// |---|---|
/// | binary | exactly those of the document |
/// | JSON | `Text`, `Number`, `Bool`, `Null`; objects and sequences |
/// | XML | `Text`; objects and sequences, told apart by what they look like, see Docs/Values.md |
///
/// - **Type names** those that the document has. A binary one has them for objects, but for its root; JSON has none.
/// - **Order** fields stand in the order of the document. In a binary document, whose order hashes decide, it is the
///   order in which its writer was called, as far as the bytes tell. A key may stand there once for each kind.
/// - **Back** what was read from one of the library's own binary documents, and not changed, is written as the same
/// bytes.
/// - **Paths** `lines[3].price` as a CDocumentException tells them; the empty path is the value itself. Where keys have
///   dots or brackets in them, the longest key that fits is taken.
/// - **Memory** 16 bytes for each element of a sequence and 32 for each field, beside texts, blobs and dates. Names
///   that a document has once are there once.
/// - **Errors** CDocumentException from the functions that are named below, with the path and, where the document is at
///   fault, its place there. What a stream raises passes through. std::bad_alloc.
/// - **Limits** documents have at most 1024 levels, in both directions. A deeper tree that a program has made can't be
///   written, and takes the stack when it is copied, compared or destroyed.
/// - **Threads** a plain value: it belongs to one thread at a time, and several may read it.
class VELLUM_API CValue
{
public:
    struct SField;

    /// The bytes of a blob.
    using Bytes = std::vector<unsigned char>;

    /// A number of a JSON document: its text there, `1.50e3` for instance, or `inf` and `nan`, which the library's own
    /// writer makes. Other words that aren't in quotes are texts.
    struct SNumber
    {
        /// The number.
        std::string text;

        /// Whether both are spelled alike.
        bool operator==(const SNumber&) const = default;
    };

    /// A null.
    CValue() noexcept;

    /// @name A value
    /// A value of the kind that has this type.
    /// @{
    CValue(bool value);
    CValue(char value);
    CValue(unsigned char value);
    CValue(signed char value);
    CValue(std::uint16_t value);
    CValue(std::int16_t value);
    CValue(std::uint32_t value);
    CValue(std::int32_t value);
    CValue(std::uint64_t value);
    CValue(std::int64_t value);
    CValue(float value);
    CValue(double value);
    CValue(std::string value);
    CValue(std::wstring value);
    CValue(const CbDateTime& value);
    CValue(Bytes value);
    CValue(SNumber value);
    /// @}

    /// @name A text
    /// A text; null is not accepted.
    /// @{
    CValue(const char* text) : CValue(std::string(text)) {}
    CValue(const wchar_t* text) : CValue(std::wstring(text)) {}
    /// @}

    /// An integer of a type of no kind of its own is of the kind of its width and sign.
    template <OtherInteger Integer>
    requires(!std::same_as<Integer, std::int64_t> && !std::same_as<Integer, std::uint64_t>) CValue(Integer value)
        : CValue(static_cast<ExactInteger<Integer>>(value))
    {
    }

    /// What would silently become a bool or a number.
    template <Misfit T>
    CValue(T value) = delete;

    /// @name Object, Sequence
    /// An object without fields, and a sequence without elements. The name is that of the type, as classes of clients
    /// tell it; empty if there is none.
    /// @{
    static CValue Object(CName typeName = {});
    static CValue Sequence(CName typeName = {});
    /// @}

    CValue(const CValue& other);
    CValue(CValue&& other) noexcept;
    CValue& operator=(const CValue& other);
    CValue& operator=(CValue&& other) noexcept;
    ~CValue();

    /// Reads one binary document from the stream's present place, and leaves the stream behind it. All that
    /// CReaderBinary refuses raises CDocumentException, "Vellum::CValue::FromBinary".
    static CValue FromBinary(CbStreamReadBinary& stream);

    /// @name FromJson, FromXml
    /// Reads a zero-terminated text. All that CReaderJson or CReaderXml refuses, XML with an element that isn't closed
    /// included, raises CDocumentException, "Vellum::CValue::FromJson" or "Vellum::CValue::FromXml".
    /// @{
    static CValue FromJson(const char* text);
    static CValue FromJson(const std::string& text) { return FromJson(text.c_str()); }
    static CValue FromXml(const char* text);
    static CValue FromXml(const std::string& text) { return FromXml(text.c_str()); }
    /// @}

    /// @name ToBinary, ToJson, ToXml
    /// Appends a document to the stream, or returns it. The value must be an object or a sequence. Whether a stream of
    /// texts has taken all is told by its state.
    ///
    /// What a format can't hold raises CDocumentException, "Vellum::CValue::ToBinary", "Vellum::CValue::ToJson" or
    /// "Vellum::CValue::ToXml", before anything is written:
    ///
    /// | | Refused |
    /// |---|---|
    /// | all | more than 1024 levels, texts and keys with a zero byte |
    /// | binary | a sequence whose elements aren't of one kind, a null in it |
    /// | JSON | a key twice in an object, a key with a quote in it or a lone backslash at its end |
    /// | XML | a null in a sequence, a key twice in an object, whatever its case, keys and types that are no names |
    /// | | a narrow text that isn't UTF-8, the char `<`, `&` or one beyond ASCII |
    ///
    /// A null field is `null` in JSON; elsewhere it isn't there. Numbers of JSON become int64, uint64 or double in
    /// binary documents, those of one sequence the first of these that holds them all. XML names what has no type name
    /// `elt` in a sequence, and `object` or `sequence` where it is the root or empty.
    /// @{
    void ToBinary(CbStreamWriteBinary& stream) const;
    void ToJson(std::ostream& stream) const;
    void ToXml(std::ostream& stream) const;
    std::string ToJson() const;
    std::string ToXml() const;
    /// @}

    /// What the value is.
    EValueKind GetKind() const { return static_cast<EValueKind>(content.index()); }

    /// Whether it is an object or a sequence.
    bool IsNested() const { return GetKind() == EValueKind::Object || GetKind() == EValueKind::Sequence; }

    /// @name GetTypeName, SetTypeName
    /// Of objects and sequences; empty for all others, and where there is none. To set that of anything else raises
    /// CException, "Vellum::CValue::GetElements".
    /// @{
    const std::string& GetTypeName() const;
    void SetTypeName(CName name);
    /// @}

    /// The value itself if it is of the kind that has this type, `v.Get<double>()` for instance, otherwise null.
    template <class T>
    const T* Get() const;

    /// @name GetFields, GetElements
    /// The fields of an object and the elements of a sequence, to be looked at and changed as one likes. Anything else
    /// has none, and none can be had: the references that aren't const raise CException, "Vellum::CValue::GetFields" or
    /// "Vellum::CValue::GetElements", then.
    /// @{
    const std::vector<SField>& GetFields() const;
    const std::vector<CValue>& GetElements() const;
    std::vector<SField>& GetFields();
    std::vector<CValue>& GetElements();
    /// @}

    /// @name Find
    /// The value at a path, or null if there is none. A field that is there in several kinds is the first of them.
    /// @{
    const CValue* Find(std::string_view path) const;
    CValue* Find(std::string_view path);
    /// @}

    /// Puts a value at a path, in the place of what is there, as a new field, or as the next element of a sequence.
    /// Returns it. CDocumentException, "Vellum::CValue::Set", if there is nothing that could hold it.
    CValue& Set(std::string_view path, CValue value);

    /// Takes the field or element at a path away. False if there is none.
    bool Remove(std::string_view path);

    /// Whether two values are the same: kinds, type names, and fields in their order. Floating numbers are the same if
    /// their bits are.
    bool operator==(const CValue& other) const;

private:
    // Something in memory of its own, which is copied with its owner.
    template <class T>
    class CBox
    {
    public:
        explicit CBox(T value) : content(std::make_unique<T>(std::move(value))) {}
        CBox(const CBox& other) : content(std::make_unique<T>(*other.content)) {}
        CBox(CBox&&) noexcept = default;
        CBox& operator=(const CBox& other) { return *this = CBox(other); }
        CBox& operator=(CBox&&) noexcept = default;
        ~CBox() = default;

        T& operator*() const { return *content; }

    private:
        std::unique_ptr<T> content;
    };

    struct SObject;
    struct SSequence;

    // In the order of EValueKind.
    using Content =
        std::variant<bool, char, unsigned char, signed char, std::uint16_t, std::int16_t, std::uint32_t, std::int32_t,
                     std::uint64_t, std::int64_t, float, double, CBox<std::string>, CBox<std::wstring>,
                     CBox<CbDateTime>, CBox<Bytes>, CBox<SObject>, CBox<SSequence>, CBox<SNumber>, std::monostate>;

    // The string table of the binary document that a root was read from. Good until the value is changed.
    using Texts = std::shared_ptr<const std::vector<std::string>>;

    // How far a path leads.
    struct SWay
    {
        const CValue* outer;   // what the last step went out from; null if there was none
        const CValue* value;   // where it ends
        std::string_view rest; // what leads nowhere
    };

    explicit CValue(Content content);
    void setTexts(Texts texts);
    SWay go(std::string_view path) const;

    Content content;

    friend class CValueWriter;
};

/// A field of an object.
struct CValue::SField
{
    /// Its name.
    CName key;

    /// What stands under it.
    CValue value;

    /// Whether key and value are the same.
    bool operator==(const SField&) const = default;
};

template <class T>
const T* CValue::Get() const
{
    if constexpr (std::is_arithmetic_v<T>)
        return std::get_if<T>(&content);
    else
    {
        const auto* const box = std::get_if<CBox<T>>(&content);
        return box == nullptr ? nullptr : &**box;
    }
}

} // namespace Vellum
