// Readers of texts that are gone by the time they are read. clang++ warns of each, of which this makes errors.

#include <Vellum/Vellum.h>

const std::string MakeConstant();
std::string MakeTemporary();

void Readers(Vellum::ISerializable& root)
{
    const Vellum::CReaderJson constantJson(MakeConstant()); // refused: 1
    const Vellum::CReaderXml constantXml(MakeConstant());   // refused: 1
    constantJson.Read(root);
    constantXml.Read(root);

    const Vellum::CReaderJson keepingJson(MakeTemporary());
    const Vellum::CReaderXml keepingXml(MakeTemporary());
    keepingJson.Read(root);
    keepingXml.Read(root);
    Vellum::CReaderJson(MakeConstant()).Read(root); // lives long enough
    Vellum::CReaderXml("<a/>").Read(root);
}

Vellum::CReaderJson Escape()
{
    const std::string local = MakeTemporary();
    return Vellum::CReaderJson(local); // refused: 1
}
