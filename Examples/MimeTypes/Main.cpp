// Reads an XML file that others made, the list of file types of Debian's package shared-mime-info, as far as the reader
// sees it (elements and their texts, no attributes), stores it as a binary document, reads it back and compares.
//
//   MimeTypes [FILE]

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <Vellum/Vellum.h>

#include "CObjects.h"
#include "CStopwatch.h"
#include "RunMain.h"

namespace
{

// A file type. Of its comments, one for each language, the first is in English and the one that is found.
class CMimeType : public Vellum::ISerializable
{
public:
    const char* GetTypeName() const override { return "mime-type"; }

    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("comment", comment);
        if (acronym)
            writer.Write("acronym", *acronym);
        if (expandedAcronym)
            writer.Write("expanded-acronym", *expandedAcronym);
    }

    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("comment", comment);
        readOptional(reader, "acronym", acronym);
        readOptional(reader, "expanded-acronym", expandedAcronym);
    }

    bool operator==(const CMimeType& other) const
    {
        return comment == other.comment && acronym == other.acronym && expandedAcronym == other.expandedAcronym;
    }

    std::wstring comment;
    std::optional<std::wstring> acronym;
    std::optional<std::wstring> expandedAcronym;

private:
    static void readOptional(const Vellum::IDataReader& reader, const char* key, std::optional<std::wstring>& value)
    {
        if (std::wstring text; reader.Read(key, text))
            value = std::move(text);
    }
};

using CMimeTypes = CObjects<CMimeType>;

// The parser takes no declarations inside a document type, and needs none.
std::string WithoutDocumentType(std::string text)
{
    const std::size_t begin = text.find("<!DOCTYPE");
    const std::size_t end = text.find("]>", begin);
    if (begin != std::string::npos && end != std::string::npos)
        text.erase(begin, end + 2 - begin);
    return text;
}

CMimeTypes LoadTypes(const std::filesystem::path& path)
{
    const CStopwatch reading;
    const std::string text = WithoutDocumentType(Vellum::CTextFile().Read(path.wstring()).GetTextRaw());
    const Vellum::CReaderXml reader(text);
    if (const Vellum::SXmlOutcome outcome = reader.Check(); !outcome.hasTree)
        throw std::runtime_error(path.string() + ", line " + std::to_string(outcome.line) + ": " + outcome.name);
    CMimeTypes types("mime-info"); // the name of the root element
    reader.Read(types);
    std::printf("%zu types in %.1f ms from %s, %zu bytes of XML\n", types.items.size(), reading.GetMilliseconds(),
                path.string().c_str(), text.size());
    return types;
}

CMimeTypes ThroughBinary(const CMimeTypes& types)
{
    CbStreamWriteBinaryBuffer bytes;
    Vellum::CWriterBinary(bytes).Write(types);
    std::printf("%u bytes as a binary document\n\n", static_cast<unsigned>(bytes.GetSize()));

    CMimeTypes copy("mime-info");
    CbStreamReadBinaryBuffer stream(bytes.GetData(), bytes.GetSize());
    Vellum::CReaderBinary(stream).Read(copy);
    return copy;
}

int Run(const std::filesystem::path& path)
{
    const CMimeTypes types = LoadTypes(path);
    const CMimeTypes copy = ThroughBinary(types);
    std::fflush(stdout);
    int printed = 0;
    for (const CMimeType& type : copy.items)
        if (type.acronym && type.expandedAcronym && printed++ < 10)
            std::cout << Vellum::Encodings::ToUTF8(*type.acronym) << ", "
                      << Vellum::Encodings::ToUTF8(*type.expandedAcronym) << ": "
                      << Vellum::Encodings::ToUTF8(type.comment) << '\n';
    const bool isEqual = printed != 0 && copy.items == types.items;
    std::cout << (isEqual ? "\nAll types came back as they were.\n" : "\nThe types differ.\n");
    return isEqual ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    return RunMain("MimeTypes",
                   [&] { return Run(argc > 1 ? argv[1] : "/usr/share/mime/packages/freedesktop.org.xml"); });
}
