#include "Model/Documents.h"

#include <cctype>

#include "Model/Tree.h"
#include "Model/Values.h"

namespace Model
{

using namespace std::string_literals;

std::string Folded(std::string name)
{
    for (char& letter : name)
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    return name;
}

namespace
{

std::string Space(CTape& tape)
{
    static const auto spaces = Words("~~~~ ~\n~\t\r\n ~\v\f~\n         ~\n            ");
    return tape.From(spaces);
}

std::string JsonText(CTape& tape)
{
    std::string text = AnyText(tape);
    if (!tape.OneIn(16))
        std::erase(text, '"');
    if (!tape.OneIn(16) && text.ends_with('\\'))
        text += '\\';
    return '"' + text + '"';
}

// Records whose keys are nearly always the same: now and then one is left out, null, there twice or in another's place.
std::string JsonRecords(CTape& tape)
{
    std::vector<std::string> keys(1 + tape.Below(12));
    for (std::string& key : keys)
        key = JsonText(tape);
    std::string text = "[";
    for (std::size_t count = tape.Below(24); count > 0; --count, text += "},")
    {
        text += '{' + Space(tape);
        for (const std::string& key : keys)
            if (!tape.OneIn(24))
                text += (tape.OneIn(12) ? tape.From(keys) : key) + Space(tape) + ':' +
                        (tape.OneIn(12) ? "null" : AnyJson(tape, 6)) + ',';
    }
    return text + "1]";
}

std::string XmlName(CTape& tape)
{
    static const auto names = Words("a~b~elt~K~k~elt~ELT~else~kak~pre~prefix~a/b~\xC3\xA4~x?");
    return tape.From(names);
}

std::string XmlAttributes(CTape& tape)
{
    static const auto values = Words("1~'>'~\">\"~'a\"&lt;'~\"&#65;\"~1?~\"?\"~&amp;~\"1~<~");
    std::string text;
    for (std::size_t count = tape.OneIn(3) ? tape.Below(4) : 0; count > 0; --count)
        text += ' ' + Space(tape) + XmlName(tape) +
                (tape.OneIn(2) ? Space(tape) + '=' + Space(tape) + tape.From(values) : "");
    return text + (tape.OneIn(4) ? Space(tape) : "");
}

std::string XmlContent(CTape& tape, int depth)
{
    static const auto sections =
        Words("<!-- c -->~<![CDATA[ QUJD\n\t]]>~<![cdata[]]>~<PRE>x</PRE>~<Script>\n</Script>~<!DOCTYPE a>~"
              "<?pi a?>");
    static const auto texts =
        Words("12~ 1.5\n~true~ QUJD ~&amp;&LT;~&#xE9;&#X6a;&#233;~&#300;~a&#0;b~&#32;&quot;'\"&apos;~a=b/>c>d~"
              "\xC3\xA4~2024-03-01 10:20:30~\xF5\xC1");
    static const auto faults = Words("</b>~<script><a>~<~</a ~&#xG;~&#;~&~\xE9~<!--");
    std::string text;
    for (std::size_t count = tape.Below(depth == 0 ? 8 : 4); count > 0; --count)
    {
        const std::size_t kind = tape.Below(depth < 5 ? 6 : 3);
        text += kind == 0 ? "" : Space(tape);
        if (kind < 2)
            text += kind == 0 ? tape.OneIn(24) ? AnyText(tape) : tape.From(texts)
                              : tape.From(tape.OneIn(12) ? faults : sections);
        else
        {
            const std::string name = XmlName(tape),
                              ends[] = {"", XmlName(tape), name + "/b", Folded(name), ' ' + name + '\n'};
            text += '<' + name + XmlAttributes(tape) + (kind == 2 ? "/>" : '>' + XmlContent(tape, depth + 1));
            const std::string& end = tape.OneIn(4) ? tape.From(ends) : name;
            text += kind == 2 || end.empty() ? "" : "</" + end + '>';
        }
    }
    return text;
}

} // namespace

std::string AnyJson(CTape& tape, int depth)
{
    static const auto words = Words("1~null~true~-1.5e3~x~12abc~~1}~1]~nul~0x1F");
    static const auto separators = Words(",~,~,~, ~ ~,\n~~,,");
    const std::size_t kind = depth == 0 ? tape.Below(2) + 3 : tape.Below(depth < 6 ? 5 : 3);
    if (kind < 3)
        return kind == 0 ? JsonText(tape) : tape.From(words);
    const bool isArray = kind == 3;
    if (isArray && tape.OneIn(4))
        return JsonRecords(tape);
    std::string text = isArray ? "[" : "{";
    const std::size_t count = tape.Below(6);
    for (std::size_t i = 0; i < count; ++i)
    {
        if (!isArray)
            text += Space(tape) + (tape.OneIn(2) ? JsonText(tape) : "\"k\"") + Space(tape) + ':';
        text += Space(tape) + AnyJson(tape, depth + 1) + Space(tape);
        if (i + 1 < count || tape.OneIn(16))
            text += tape.From(separators);
    }
    return text + Space(tape) + (tape.OneIn(48) ? "" : isArray ? "]" : "}");
}

std::string AnyXml(CTape& tape, const std::string& root)
{
    static const auto heads = Words("<?xml version='1.0'?>~<?xml?>~<?xml a b=1?>\n<!-- c -->~~<!-- c -->~<x/>");
    std::string text = tape.From(heads) + Space(tape);
    if (tape.OneIn(8))
        text += XmlContent(tape, 1);
    return text + '<' + root + XmlAttributes(tape) + '>' + XmlContent(tape, 0) + "</" + root + '>' + Space(tape);
}

std::string Mutated(std::string document, CTape& tape, bool isBinary)
{
    static const std::string counts[] = {{"\0\0\0\0", 4},           {"\1\0\0\0", 4},   "\xFF\xFF\xFF\xFF",
                                         "\xFF\xFF\xFF\x7F",        {"\0\0\0\x40", 4}, {"\0\1\0\0", 4},
                                         "\xFF\xFE\xFF\xFF\xFF\xFF"};
    for (std::size_t changes = tape.OneIn(2) ? 0 : 1 + tape.Below(3); changes > 0 && !document.empty(); --changes)
    {
        std::size_t at = tape.Below(document.size());
        if (isBinary && tape.OneIn(2)) // a small number of 32 bits
            at = std::min(document.find("\0\0\0"s, at), document.size()) - 1;
        at = std::min(at, document.size() - 1);
        const std::size_t size = 1 + tape.Below(tape.OneIn(4) ? 64 : 6);
        const std::string piece = document.substr(at, size), other = isBinary ? tape.From(counts) : AnyText(tape);
        const std::size_t change = tape.Below(7);
        if (change == 0)
            document[at] = static_cast<char>(tape.Next());
        else if (change == 1)
            document[at] = static_cast<char>(document[at] + (tape.OneIn(2) ? 1 : -1));
        else if (change == 2)
            document.resize(at);
        else if (change == 3)
            document.insert(tape.Below(document.size()), piece);
        else if (change == 4)
            document.insert(tape.Below(document.erase(at, size).size() + 1), tape.OneIn(2) ? piece : "");
        else
            document.replace(at, change == 5 ? 0 : std::min<std::size_t>(piece.size(), 4), other);
    }
    return document;
}

} // namespace Model
