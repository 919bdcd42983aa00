#pragma once

#include "Groundwork/IDateTime.h"

#include "Vellum/Vellum.h"

#include "Model/Tree.h"
#include "Model/Visitor.h"
#include "Support/Clients.h"

// The library's clients: trees that are written, and visitors that read.
namespace Model
{

class CTreeDate final : public IDateTime
{
public:
    explicit CTreeDate(SDate& date) : date(date) {}
    using IDateTime::operator=;

    unsigned short GetYear() const override { return date.fields[0]; }
    unsigned short GetMonth() const override { return date.fields[1]; }
    unsigned short GetDay() const override { return date.fields[2]; }
    unsigned short GetHour() const override { return date.fields[3]; }
    unsigned short GetMinute() const override { return date.fields[4]; }
    unsigned short GetSecond() const override { return date.fields[5]; }
    unsigned short GetMilliseconds() const override { return date.fields[6]; }
    void SetYear(unsigned short value) override { date.fields[0] = value; }
    void SetMonth(unsigned short value) override { date.fields[1] = value; }
    void SetDay(unsigned short value) override { date.fields[2] = value; }
    void SetHour(unsigned short value) override { date.fields[3] = value; }
    void SetMinute(unsigned short value) override { date.fields[4] = value; }
    void SetSecond(unsigned short value) override { date.fields[5] = value; }
    void SetMilliseconds(unsigned short value) override { date.fields[6] = value; }

private:
    SDate& date;
};

template <class Writer, class... Key>
void WriteItem(Writer& writer, const SItem& item, Key... key);

inline Support::CFields ObjectOf(const SNode& node)
{
    const auto write = [&node](Vellum::IDataWriter& writer)
    {
        std::string key;
        const auto keyOf = [&](const SItem& item)
        { return node.reusesKey ? (key = item.key).c_str() : item.key.c_str(); };
        RunClient(node, [&](const SItem& item) { WriteItem(writer, item, keyOf(item)); });
    };
    return Support::CFields(write, {}, node.typeName);
}

inline Support::CElements SequenceOf(const SNode& node)
{
    const auto write = [&node](Vellum::IContainerWriter& writer)
    { RunClient(node, [&](const SItem& item) { WriteItem(writer, item); }); };
    return Support::CElements(write, {}, node.typeName);
}

template <class Writer, class... Key>
void WriteItem(Writer& writer, const SItem& item, Key... key)
{
    const auto write = [&]<class T>(const T& value)
    {
        if constexpr (std::is_same_v<T, SBlob>)
            writer.Write(key..., value.bytes.size(), value.bytes.data());
        else if constexpr (std::is_same_v<T, SDate>)
        {
            SDate copy = value;
            writer.Write(key..., CTreeDate(copy));
        }
        else if constexpr (!std::is_same_v<T, std::shared_ptr<const SNode>>)
            writer.Write(key..., value);
        else if (value->isSequence)
            writer.Write(key..., SequenceOf(*value));
        else
            writer.Write(key..., ObjectOf(*value));
    };
    std::visit(write, item.value);
}

template <class Body>
void WithRoot(const SNode& root, const Body& body)
{
    root.isSequence ? body(SequenceOf(root)) : body(ObjectOf(root));
}

// A library's reader as a visitor takes it.
template <class Reader>
class CReaderView
{
public:
    explicit CReaderView(Reader& reader) : reader(reader) {}

    std::uint32_t GetKeyCount() const { return reader.GetKeyCount(); }
    const char* GetKey(std::uint32_t index) const { return reader.GetKey(index); }
    template <class Name>
    Vellum::BlobRange GetBlob(Name name)
    {
        return reader.GetBlob(name);
    }
    template <class Name, class T>
    bool Read(Name name, T& value)
    {
        return reader.Read(name, value);
    }
    template <class Name>
    bool Read(Name name, SDate& value)
    {
        CTreeDate date(value);
        return reader.Read(name, date);
    }
    template <class Name, bool IsSequence>
    bool Read(Name name, CVisitor::SNested<IsSequence> value);

private:
    Reader& reader;
};

// A client that lets a visitor read.
template <bool IsSequence>
auto VisitingClient(CVisitor& visitor)
{
    using Client = std::conditional_t<IsSequence, Support::CElements, Support::CFields>;
    const auto read = [&visitor](auto& reader)
    {
        CReaderView view(reader);
        CVisitor::SNested<IsSequence>{visitor}.Visit(view);
    };
    return Client({}, read, visitor.GetTypeName());
}

template <class Reader>
template <class Name, bool IsSequence>
bool CReaderView<Reader>::Read(Name name, CVisitor::SNested<IsSequence> value)
{
    auto client = VisitingClient<IsSequence>(value.visitor);
    return reader.Read(name, client);
}

inline void ReadRoot(const Vellum::IReader& reader, bool isSequence, CVisitor& visitor)
{
    auto sequence = VisitingClient<true>(visitor);
    auto object = VisitingClient<false>(visitor);
    isSequence ? reader.Read(sequence) : reader.Read(object);
}

} // namespace Model
