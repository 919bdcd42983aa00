#include <Vellum/Vellum.h>

// Fails if it hasn't got its resource.
int main() { return Vellum::CTextFile().Read(nullptr, 1, L"TEXT").GetText() == L"in the program\n" ? 0 : 1; }
