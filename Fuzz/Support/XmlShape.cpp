#include "Support/XmlShape.h"

namespace Fuzzing
{
namespace
{

// All bytes but those of `without`, NUL and the lead bytes of UTF-8, which take what follows them along.
std::string MakeLetters(std::string_view without)
{
    std::string letters;
    for (int byte = 1; byte < 256; ++byte)
        if ((byte < 0xC2 || byte > 0xF4) && without.find(static_cast<char>(byte)) == std::string_view::npos)
            letters += static_cast<char>(byte);
    return letters;
}

} // namespace

STreeShape MakeXmlShape()
{
    static const std::string TextLetters = MakeLetters("");
    static const std::string CharLetters = MakeLetters("<& \t\n\v\f\r"); // raw in a document
    STreeShape shape;
    shape.keyLetters =
        "abcdefghijklmnopqtuvwxyz0123456789:-_."; // one case; no r and s: <pre> and <script> are sections
    shape.textLetters = TextLetters;
    shape.charLetters = CharLetters;
    shape.keyInManyKinds = false;
    shape.mixedSequences = true;
    shape.loneSurrogates = false;
    shape.outerSpace = false;
    shape.nonFiniteNumbers = false; // the sign and the payload of a not-a-number are lost
    shape.milliseconds = false;
    return shape;
}

} // namespace Fuzzing
