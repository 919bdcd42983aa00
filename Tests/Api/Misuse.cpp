// Calls that would do something else than they say. The compiler has to refuse each line that is marked, and no other:
// Tests/Support/CheckRefused.sh looks.
#include <Vellum/Vellum.h>

enum EPlain
{
    First
};
enum class EScoped
{
    First
};
struct SMember
{
    int member;
};
void Function();

void Misuse(const unsigned char* bytes, std::size_t size, const std::string& text)
{
    (void)Vellum::Base64::Encode(bytes, size, true);
    (void)Vellum::Base64::Encode("text", true);
    (void)Vellum::Base64::Encode(text, false);
    (void)Vellum::Base64::Encode(bytes, size);                                // refused
    (void)Vellum::Base64::Encode(reinterpret_cast<const char*>(bytes), size); // refused
    (void)Vellum::Base64::Encode("text", 4);                                  // refused
    (void)Vellum::Base64::Encode(text, 4);                                    // refused

    CbDateTime date;
    date = "2024-03-01 10:20:30";
    date = CbDateTime();
    date = 0;     // refused
    date = false; // refused
}

void Misuse(Vellum::IDataWriter& writer, const int* pointer)
{
    writer.Write("key", 'x');
    writer.Write("key", L"text");
    writer.Write("key", 1LL);
    writer.Write("key", static_cast<int>(First));
    writer.Write("key", std::string("text"));
    writer.Write("key", nullptr);          // refused
    writer.Write("key", pointer);          // refused
    writer.Write("key", Function);         // refused
    writer.Write("key", &SMember::member); // refused
    writer.Write("key", [] {});            // refused
    writer.Write("key", L'x');             // refused
    writer.Write("key", u8'x');            // refused
    writer.Write("key", u'x');             // refused
    writer.Write("key", U'x');             // refused
    writer.Write("key", u"text");          // refused
    writer.Write("key", First);            // refused
    writer.Write("key", EScoped::First);   // refused
}

void Misuse(Vellum::IContainerWriter& writer, Vellum::ISerializable* pointer)
{
    writer.Write("text");
    writer.Write(1ULL);
    writer.Write(nullptr);          // refused
    writer.Write(pointer);          // refused
    writer.Write(&Function);        // refused
    writer.Write(&SMember::member); // refused
    writer.Write([] {});            // refused
    writer.Write(L'x');             // refused
    writer.Write(First);            // refused
}

template <class Stream>
void Misuse(Stream& stream, const void* pointer)
{
    stream.Write("text").Write(1LL).Write(1ULL).Write(1L).Write('x').Write(true);
    stream.Write(nullptr);          // refused
    stream.Write(pointer);          // refused
    stream.Write(&Function);        // refused
    stream.Write(&SMember::member); // refused
    stream.Write([] {});            // refused
    stream.Write(L'x');             // refused
    stream.Write(First);            // refused
}
template void Misuse(IStreamWrite&, const void*);
template void Misuse(CbStreamWriteBinaryBuffer&, const void*);
template void Misuse(CbStreamWriteBinaryFile&, const void*);
