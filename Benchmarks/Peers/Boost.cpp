#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/archive/xml_iarchive.hpp>
#include <boost/archive/xml_oarchive.hpp>
#include <boost/serialization/binary_object.hpp>
#include <boost/serialization/level.hpp>
#include <boost/serialization/nvp.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/tracking.hpp>
#include <boost/serialization/vector.hpp>
#include <sstream>
#include <type_traits>
#include <utility>

#include "Support/CMemoryInput.h"
#include "Support/Measure.h"
#include "Support/Values.h"

namespace Measured
{

template <class Archive>
using StoredDate = std::conditional_t<std::is_same_v<Archive, boost::archive::xml_oarchive> ||
                                          std::is_same_v<Archive, boost::archive::xml_iarchive>,
                                      std::string, std::uint64_t>;

inline void Convert(const CbDateTime& date, std::string& text) { text = FormatDate(date).data(); }
inline void Convert(const CbDateTime& date, std::uint64_t& packed) { packed = PackDate(date); }
inline void Convert(const std::string& text, CbDateTime& date) { date = ParseDate(text); }
inline void Convert(std::uint64_t packed, CbDateTime& date) { date = UnpackDate(packed); }

template <class Archive>
void SerializeDate(Archive& archive, CbDateTime& date)
{
    StoredDate<Archive> stored{};
    if constexpr (Archive::is_saving::value)
        Convert(date, stored);
    archive& boost::serialization::make_nvp("date", stored);
    if constexpr (Archive::is_loading::value)
        Convert(stored, date);
}

template <class Archive>
void serialize(Archive& archive, SLine& line, unsigned)
{
    archive& boost::serialization::make_nvp("quantity", line.quantity);
    archive& boost::serialization::make_nvp("article", line.article);
    archive& boost::serialization::make_nvp("price", line.price);
}

template <class Archive>
void serialize(Archive& archive, SBuyer& buyer, unsigned)
{
    archive& boost::serialization::make_nvp("name", buyer.name);
    archive& boost::serialization::make_nvp("city", buyer.city);
    archive& boost::serialization::make_nvp("account", buyer.account);
}

template <class Archive>
void serialize(Archive& archive, SOrder& order, unsigned)
{
    archive& boost::serialization::make_nvp("id", order.id);
    archive& boost::serialization::make_nvp("title", order.title);
    archive& boost::serialization::make_nvp("total", order.total);
    archive& boost::serialization::make_nvp("discount", order.discount);
    archive& boost::serialization::make_nvp("paid", order.paid);
    SerializeDate(archive, order.date);
    archive& boost::serialization::make_nvp("buyer", order.buyer);
    archive& boost::serialization::make_nvp("lines", order.lines.elements);
    auto signature = boost::serialization::make_binary_object(order.signature.data(), order.signature.size());
    archive& boost::serialization::make_nvp("signature", signature);
}

template <class Archive>
void serialize(Archive& archive, SLevel& level, unsigned)
{
    bool hasInner = level.inner != nullptr;
    archive& boost::serialization::make_nvp("number", level.number);
    archive& boost::serialization::make_nvp("name", level.name);
    archive& boost::serialization::make_nvp("hasInner", hasInner);
    if (!hasInner)
        return;
    if constexpr (Archive::is_loading::value)
        level.inner = std::make_unique<SLevel>();
    archive& boost::serialization::make_nvp("inner", *level.inner);
}

} // namespace Measured

// Without a class version and without a table of objects, for which these classes have no use.
BOOST_CLASS_IMPLEMENTATION(Measured::SLine, boost::serialization::object_serializable)
BOOST_CLASS_IMPLEMENTATION(Measured::SBuyer, boost::serialization::object_serializable)
BOOST_CLASS_IMPLEMENTATION(Measured::SOrder, boost::serialization::object_serializable)
BOOST_CLASS_IMPLEMENTATION(Measured::SLevel, boost::serialization::object_serializable)
BOOST_CLASS_TRACKING(Measured::SLine, boost::serialization::track_never)
BOOST_CLASS_TRACKING(Measured::SBuyer, boost::serialization::track_never)
BOOST_CLASS_TRACKING(Measured::SOrder, boost::serialization::track_never)
BOOST_CLASS_TRACKING(Measured::SLevel, boost::serialization::track_never)

namespace Measured
{

namespace
{

template <class OutputArchive>
void Save(OutputArchive& archive, const SLevel& level)
{
    archive << boost::serialization::make_nvp("level", level);
}

template <class OutputArchive, class Element>
void Save(OutputArchive& archive, const SSequence<Element>& sequence)
{
    archive << boost::serialization::make_nvp("elements", sequence.elements);
}

void Save(boost::archive::binary_oarchive& archive, const SFields& fields)
{
    for (std::uint32_t index = 0; index < SFields::Count; ++index)
        archive << SFields::GetKeys()[index] << fields.values[index];
}

template <class InputArchive>
void Load(InputArchive& archive, SLevel& level)
{
    archive >> boost::serialization::make_nvp("level", level);
}

template <class InputArchive, class Element>
void Load(InputArchive& archive, SSequence<Element>& sequence)
{
    archive >> boost::serialization::make_nvp("elements", sequence.elements);
}

void Load(boost::archive::binary_iarchive& archive, SFields& fields)
{
    FieldTable table(SFields::Count);
    for (std::uint32_t index = 0; index < SFields::Count; ++index)
    {
        std::string key;
        archive >> key;
        archive >> table[std::move(key)];
    }
    TakeFields(table, fields);
}

template <class OutputArchive, class InputArchive>
struct SBoost
{
    static constexpr const char* Name = "Boost";

    template <class Objects>
    requires requires(OutputArchive& archive, const Objects& objects) { Save(archive, objects); }
    static std::string Write(const Objects& objects)
    {
        std::ostringstream stream;
        {
            OutputArchive archive(stream);
            Save(archive, objects);
        } // the XML archive ends its document when it is destroyed
        return std::move(stream).str();
    }
    template <class Objects>
    requires requires(InputArchive& archive, Objects& objects) { Load(archive, objects); }
    static void Read(const std::string& document, Objects& objects)
    {
        Support::CMemoryInput stream(document);
        InputArchive archive(stream);
        Load(archive, objects);
    }
};

struct SBoostBinary : SBoost<boost::archive::binary_oarchive, boost::archive::binary_iarchive>
{
    static constexpr const char* Format = "Binary";
};

// Its XML can be read in the order of writing only, so that fields aren't looked up.
struct SBoostXml : SBoost<boost::archive::xml_oarchive, boost::archive::xml_iarchive>
{
    static constexpr const char* Format = "Xml";
};

[[maybe_unused]] const bool added = AddPeer<SBoostBinary>() && AddPeer<SBoostXml>();

} // namespace

} // namespace Measured
