#include <iostream>
#include <sstream>
#include <Vellum/Vellum.h>

class CAlbum : public Vellum::ISerializable
{
public:
    const char* GetTypeName() const override { return "Album"; }

    void Write(Vellum::IDataWriter& writer) const override
    {
        writer.Write("title", title);
        writer.Write("year", year);
        writer.Write("rating", rating);
    }

    void Read(Vellum::IDataReader& reader) override
    {
        reader.Read("title", title);
        reader.Read("year", year);
        reader.Read("rating", rating); // false, and `rating` keeps its default, where a document has none
    }

    std::wstring title;
    std::uint16_t year = 0;
    double rating = 0.0;
};

int main()
{
    CAlbum album;
    album.title = L"Wallflower";
    album.year = 2015;
    album.rating = 4.5;

    CbStreamWriteBinaryBuffer bytes; // a binary document in memory
    Vellum::CWriterBinary(bytes).Write(album);

    CAlbum copy;
    CbStreamReadBinaryBuffer stream(bytes.GetData(), bytes.GetSize());
    Vellum::CReaderBinary(stream).Read(copy);

    std::ostringstream json; // the same object as text
    Vellum::CWriterJson(json).Write(copy);
    std::cout << json.str();
}
