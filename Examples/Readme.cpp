#include <cstdint>
#include <Describe/Describe.h>
#include <iostream>
#include <string>
#include <vector>

class CAlbum
{
public:
    static constexpr auto Describe()
    {
        return Vellum::Fields("Album", Vellum::Field("title", &CAlbum::title).Required(),
                              Vellum::Field("year", &CAlbum::year), Vellum::Field("rating", &CAlbum::rating));
    }

    CAlbum() = default;
    CAlbum(const std::wstring& name, std::uint16_t published) : title(name), year(published) {}
    void Rate(double stars) { rating = stars; }

private:
    std::wstring title;
    std::uint16_t year = 0;
    double rating = 0.0; // stays 0 where a document has none
};

int main()
{
    CAlbum album(L"Wallflower", 2015);
    album.Rate(4.5);

    const std::vector<unsigned char> bytes = Vellum::ToBinary(album); // small and fast
    const auto copy = Vellum::FromBinary<CAlbum>(bytes);

    std::cout << Vellum::ToJson(copy); // the same object as text
}
