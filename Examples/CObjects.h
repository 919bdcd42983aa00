#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>
#include <Vellum/Vellum.h>

// CObjects: client objects of one class as a sequence, kept in a vector. The library creates no client objects, so
// Read makes them one by one and stops where the document has no more.
template <class Object>
class CObjects : public Vellum::ISerializableContainer
{
public:
    explicit CObjects(std::string typeName) : typeName(std::move(typeName)) {}

    const char* GetTypeName() const override { return typeName.c_str(); }

    void Write(Vellum::IContainerWriter& writer) const override
    {
        for (const Object& object : items)
            writer.Write(object);
    }

    void Read(Vellum::IContainerReader& reader) override
    {
        items.clear();
        for (Object object; reader.Read(static_cast<std::uint32_t>(items.size()), object); object = Object())
            items.push_back(std::move(object));
    }

    std::vector<Object> items;

private:
    std::string typeName;
};
