#include "Model/Documents.h"

#include <cctype>

#include "Model/Tree.h"

namespace Model
{

namespace
{

std::string Space(CTape& tape)
{
    static const std::string spaces[] = {"", "", "", "", " ", "\n", "\t\r\n ", "\v\f"};
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

std::string XmlName(CTape& tape)
{
    static const std::string names[] = {"a", "b", "elt", "K", "k", "elt", "pre", "prefix", "a/b", "\xC3\xA4", "x?"};
    return tape.From(names);
}

std::string XmlAttributes(CTape& tape)
{
    static const std::string values[] = {"1",     "'1'",   "\"1\"", "'a\"&lt;'", "\"&#65;\"", "1?",
                                         "\"?\"", "&amp;", "\"1",   "<",         ""};
    std::string text;
    for (std::size_t count = tape.OneIn(3) ? tape.Below(4) : 0; count > 0; --count)
        text += ' ' + Space(tape) + XmlName(tape) +
                (tape.OneIn(2) ? Space(tape) + '=' + Space(tape) + tape.From(values) : "");
    return text + (tape.OneIn(4) ? Space(tape) : "");
}

std::string XmlContent(CTape& tape, int depth)
{
    static const std::string sections[] = {"<!-- c -->",   "<![CDATA[ QUJD\n\t]]>", "<![cdata[]]>",
                                           "<PRE>x</PRE>", "<Script>\n</Script>",   "<!DOCTYPE a>",
                                           "<?pi a?>"};
    static const std::string texts[] = {"12",       " 1.5\n",    "true",
                                        " QUJD ",   "&amp;&LT;", "&#xE9;&#X6a;&#233;",
                                        "&#300;",   "a&#0;b",    "&#32;&quot;'\"&apos;",
                                        "a=b/>c>d", "\xC3\xA4",  "2024-03-01 10:20:30"};
    static const std::string faults[] = {"</b>", "<script><a>", "<", "</a ", "&#xG;", "&#;", "&", "\xE9", "<!--"};
    std::string text;
    for (std::size_t count = tape.Below(depth == 0 ? 8 : 4); count > 0; --count)
        switch (tape.Below(depth < 5 ? 6 : 3))
        {
        case 0:
            text += tape.OneIn(24) ? AnyText(tape) : tape.From(texts);
            break;
        case 1:
            text += Space(tape) + (tape.OneIn(12) ? tape.From(faults) : tape.From(sections));
            break;
        case 2:
            text += Space(tape) + '<' + XmlName(tape) + XmlAttributes(tape) + "/>";
            break;
        default:
            const std::string name = XmlName(tape);
            text += Space(tape) + '<' + name + XmlAttributes(tape) + '>' + XmlContent(tape, depth + 1);
            const std::size_t end = tape.Below(16);
            if (end == 0)
                text +=
                    "</" + Space(tape) + static_cast<char>(std::toupper(name[0])) + name.substr(1) + Space(tape) + '>';
            else if (end == 1)
                text += "</" + XmlName(tape) + '>';
            else if (end != 2)
                text += "</" + name + '>';
        }
    return text;
}

} // namespace

std::string AnyJson(CTape& tape, int depth)
{
    static const std::string words[] = {"1", "null", "true", "-1.5e3", "x", "12abc", "", "1}", "1]", "nul", "0x1F"};
    static const std::string separators[] = {",", ",", ",", ", ", " ", ",\n", "", ",,"};
    const std::size_t kind = depth == 0 ? tape.Below(2) + 3 : tape.Below(depth < 6 ? 5 : 3);
    if (kind < 3)
        return kind == 0 ? JsonText(tape) : tape.From(words);
    const bool isArray = kind == 3;
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
    static const std::string heads[] = {
        "<?xml version='1.0'?>", "<?xml?>", "<?xml a b=1?>\n<!-- c -->", "", "<!-- c -->", "<x/>"};
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
        const std::size_t at = tape.Below(document.size()), size = 1 + tape.Below(tape.OneIn(4) ? 64 : 6);
        const std::string piece = document.substr(at, size), other = isBinary ? tape.From(counts) : AnyText(tape);
        switch (tape.Below(8))
        {
        case 0:
            document[at] = static_cast<char>(tape.Next());
            break;
        case 1:
            document[at] = static_cast<char>(document[at] + (tape.OneIn(2) ? 1 : -1));
            break;
        case 2:
            document.resize(at);
            break;
        case 3:
            document.erase(at, size);
            break;
        case 4:
            document.insert(tape.Below(document.size()), piece);
            break;
        case 5:
            document.erase(at, size);
            document.insert(tape.Below(document.size() + 1), piece);
            break;
        case 6:
            document.replace(at, std::min<std::size_t>(piece.size(), 4), other);
            break;
        default:
            document.insert(at, other);
        }
    }
    return document;
}

} // namespace Model
