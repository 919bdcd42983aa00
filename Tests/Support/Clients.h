#pragma once

#include <functional>
#include <string>
#include <utility>

#include "Vellum/IContainerReader.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataReader.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

namespace Support
{

// A client object made of two lambdas. One that is only written or only read leaves the other out.
class CFields : public Vellum::ISerializable
{
public:
    using Writing = std::function<void(Vellum::IDataWriter&)>;
    using Reading = std::function<void(Vellum::IDataReader&)>;

    explicit CFields(Writing writing = {}, Reading reading = {}, std::string typeName = "Fields")
        : writing(std::move(writing)), reading(std::move(reading)), typeName(std::move(typeName))
    {
    }

    const char* GetTypeName() const override { return typeName.c_str(); }
    void Write(Vellum::IDataWriter& writer) const override
    {
        if (writing)
            writing(writer);
    }
    void Read(Vellum::IDataReader& reader) override
    {
        if (reading)
            reading(reader);
    }

private:
    Writing writing;
    Reading reading;
    std::string typeName;
};

// The same for a sequence.
class CElements : public Vellum::ISerializableContainer
{
public:
    using Writing = std::function<void(Vellum::IContainerWriter&)>;
    using Reading = std::function<void(Vellum::IContainerReader&)>;

    explicit CElements(Writing writing = {}, Reading reading = {}, std::string typeName = "Elements")
        : writing(std::move(writing)), reading(std::move(reading)), typeName(std::move(typeName))
    {
    }

    const char* GetTypeName() const override { return typeName.c_str(); }
    void Write(Vellum::IContainerWriter& writer) const override
    {
        if (writing)
            writing(writer);
    }
    void Read(Vellum::IContainerReader& reader) override
    {
        if (reading)
            reading(reader);
    }

private:
    Writing writing;
    Reading reading;
    std::string typeName;
};

// Objects that are only read.
inline CFields ReadFields(CFields::Reading reading) { return CFields({}, std::move(reading)); }
inline CElements ReadElements(CElements::Reading reading) { return CElements({}, std::move(reading)); }

} // namespace Support
