#include <cereal/archives/binary.hpp>
#include <cereal/archives/json.hpp>
#include <cereal/archives/xml.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/unordered_map.hpp>
#include <cereal/types/vector.hpp>
#include <sstream>
#include <type_traits>
#include <utility>

#include "Support/CMemoryInput.h"
#include "Support/Measure.h"
#include "Support/Values.h"

// cereal looks for the functions of a class in the namespace of that class.
namespace Measured
{

template <class Archive>
constexpr bool IsText = cereal::traits::is_text_archive<Archive>::value;

} // namespace Measured

template <class Archive>
auto save_minimal(const Archive&, const CbDateTime& date)
{
    if constexpr (Measured::IsText<Archive>)
        return std::string(Measured::FormatDate(date).data());
    else
        return Measured::PackDate(date);
}

template <class Archive>
void load_minimal(const Archive&, CbDateTime& date,
                  const std::conditional_t<Measured::IsText<Archive>, std::string, std::uint64_t>& value)
{
    if constexpr (Measured::IsText<Archive>)
        date = Measured::ParseDate(value);
    else
        date = Measured::UnpackDate(value);
}

namespace Measured
{

template <class Archive>
void serialize(Archive& archive, SLine& line)
{
    archive(cereal::make_nvp("quantity", line.quantity), cereal::make_nvp("article", line.article),
            cereal::make_nvp("price", line.price));
}

template <class Archive>
void serialize(Archive& archive, SBuyer& buyer)
{
    archive(cereal::make_nvp("name", buyer.name), cereal::make_nvp("city", buyer.city),
            cereal::make_nvp("account", buyer.account));
}

// As Base64 in the text archives, which have calls of their own for that.
template <class Archive>
void SerializeSignature(Archive& archive, Signature& signature)
{
    if constexpr (!IsText<Archive>)
        archive(cereal::binary_data(signature.data(), signature.size()));
    else if constexpr (Archive::is_loading::value)
        archive.loadBinaryValue(signature.data(), signature.size(), "signature");
    else
        archive.saveBinaryValue(signature.data(), signature.size(), "signature");
}

template <class Archive>
void serialize(Archive& archive, SOrder& order)
{
    archive(cereal::make_nvp("id", order.id), cereal::make_nvp("title", order.title),
            cereal::make_nvp("total", order.total), cereal::make_nvp("discount", order.discount),
            cereal::make_nvp("paid", order.paid), cereal::make_nvp("date", order.date),
            cereal::make_nvp("buyer", order.buyer), cereal::make_nvp("lines", order.lines.elements));
    SerializeSignature(archive, order.signature);
}

template <class Archive>
void serialize(Archive& archive, SLevel& level)
{
    bool hasInner = level.inner != nullptr;
    archive(cereal::make_nvp("number", level.number), cereal::make_nvp("name", level.name),
            cereal::make_nvp("hasInner", hasInner));
    if (!hasInner)
        return;
    if constexpr (Archive::is_loading::value)
        level.inner = std::make_unique<SLevel>();
    archive(cereal::make_nvp("inner", *level.inner));
}

namespace
{

// The text archives without their indentation.
template <class OutputArchive>
OutputArchive MakeArchive(std::ostream& stream)
{
    if constexpr (std::is_same_v<OutputArchive, cereal::JSONOutputArchive>)
        return OutputArchive(stream, cereal::JSONOutputArchive::Options::NoIndent());
    else if constexpr (std::is_same_v<OutputArchive, cereal::XMLOutputArchive>)
        return OutputArchive(stream, cereal::XMLOutputArchive::Options().indent(false));
    else
        return OutputArchive(stream);
}

// A table's form in a binary archive; members of the document in the text archives.
template <class Archive>
void SaveFields(Archive& archive, const SFields& fields)
{
    if constexpr (!IsText<Archive>)
        archive(cereal::make_size_tag(static_cast<cereal::size_type>(SFields::Count)));
    for (std::uint32_t index = 0; index < SFields::Count; ++index)
        if constexpr (IsText<Archive>)
            archive(cereal::make_nvp(SFields::GetKeys()[index], fields.values[index]));
        else
            archive(SFields::GetKeys()[index], fields.values[index]);
}

template <class Archive>
void LoadFields(Archive& archive, SFields& fields)
{
    if constexpr (IsText<Archive>)
    {
        for (const std::uint32_t index : fields.lookups)
            archive(cereal::make_nvp(SFields::GetKeys()[index], fields.values[index]));
    }
    else
    {
        FieldTable table;
        archive(table);
        TakeFields(table, fields);
    }
}

template <class OutputArchive, class InputArchive>
struct SCereal
{
    static constexpr const char* Name = "cereal";

    template <class Objects>
    static std::string Write(const Objects& objects)
    {
        std::ostringstream stream;
        {
            OutputArchive archive = MakeArchive<OutputArchive>(stream);
            Save(archive, objects);
        } // the text archives end their document when they are destroyed
        return std::move(stream).str();
    }
    template <class Objects>
    static void Read(const std::string& document, Objects& objects)
    {
        Support::CMemoryInput stream(document);
        InputArchive archive(stream);
        Load(archive, objects);
    }

private:
    template <class Element>
    static void Save(OutputArchive& archive, const SSequence<Element>& sequence)
    {
        archive(cereal::make_nvp("elements", sequence.elements));
    }
    static void Save(OutputArchive& archive, const SLevel& level) { archive(cereal::make_nvp("level", level)); }
    static void Save(OutputArchive& archive, const SFields& fields) { SaveFields(archive, fields); }

    template <class Element>
    static void Load(InputArchive& archive, SSequence<Element>& sequence)
    {
        archive(cereal::make_nvp("elements", sequence.elements));
    }
    static void Load(InputArchive& archive, SLevel& level) { archive(cereal::make_nvp("level", level)); }
    static void Load(InputArchive& archive, SFields& fields) { LoadFields(archive, fields); }
};

struct SCerealBinary : SCereal<cereal::BinaryOutputArchive, cereal::BinaryInputArchive>
{
    static constexpr const char* Format = "Binary";
};

struct SCerealJson : SCereal<cereal::JSONOutputArchive, cereal::JSONInputArchive>
{
    static constexpr const char* Format = "Json";
};

struct SCerealXml : SCereal<cereal::XMLOutputArchive, cereal::XMLInputArchive>
{
    static constexpr const char* Format = "Xml";
};

[[maybe_unused]] const bool added = AddPeer<SCerealBinary>() && AddPeer<SCerealJson>() && AddPeer<SCerealXml>();

} // namespace

} // namespace Measured
