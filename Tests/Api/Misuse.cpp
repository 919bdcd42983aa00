// Calls that would do something else than they say. The compiler has to refuse each line that is marked, as often as it
// is told, and no other: Tests/Support/CheckRefused.sh looks.
#include <Vellum/Vellum.h>

enum EPlain
{
    Plain
};
enum class EScoped
{
    Scoped
};
void Function();

void MisuseUtilities(const unsigned char* bytes, std::size_t size, const std::string& text, CbDateTime& date)
{
    (void)Vellum::Base64::Encode(bytes, size, true);
    (void)Vellum::Base64::Encode("text", true);
    (void)Vellum::Base64::Encode(text, false);
    (void)Vellum::Base64::Encode(bytes, size);                                // refused: 1
    (void)Vellum::Base64::Encode(reinterpret_cast<const char*>(bytes), size); // refused: 1
    (void)Vellum::Base64::Encode("text", 4);                                  // refused: 1
    (void)Vellum::Base64::Encode(text, 4);                                    // refused: 1
    date = "2024-03-01 10:20:30";
    date = CbDateTime();
    date = 0;     // refused: 1
    date = false; // refused: 1
}

template <class Target, class... Key>
void MisuseWrite(Target& target, Key... key)
{
    target.Write(key..., "text");
    target.Write(key..., std::wstring());
    target.Write(key..., 'x');
    target.Write(key..., true);
    target.Write(key..., 1L);
    target.Write(key..., 1LL);
    target.Write(key..., 1ULL);
    target.Write(key..., static_cast<int>(Plain));
    target.Write(key..., nullptr);                      // refused: 4
    target.Write(key..., &target);                      // refused: 4
    target.Write(key..., static_cast<const void*>("")); // refused: 4
    target.Write(key..., Function);                     // refused: 4
    target.Write(key..., &std::string::empty);          // refused: 4
    target.Write(key..., [] {});                        // refused: 4
    target.Write(key..., L'x');                         // refused: 4
    target.Write(key..., u8'x');                        // refused: 4
    target.Write(key..., u'x');                         // refused: 4
    target.Write(key..., U'x');                         // refused: 4
    target.Write(key..., u"text");                      // refused: 4
    target.Write(key..., Plain);                        // refused: 4
    target.Write(key..., EScoped::Scoped);              // refused: 4
}
template void MisuseWrite(Vellum::IDataWriter&, const char*);
template void MisuseWrite(Vellum::IContainerWriter&);
template void MisuseWrite(IStreamWrite&);
template void MisuseWrite(CbStreamWriteBinaryBuffer&);
