# Reads a header in the house style and prints it with its comments in the form that Doxygen understands. Line numbers
# stay as they are, but for documented macros.
#
#   // above a declaration       its documentation, and that of the declarations that follow without a blank line, if
#                                they are of its kind: the other overloads of a block
#   declaration; // remark       stands behind that; further lines of it begin in the same column
#   // above a blank line        outside of classes: the documentation of the file
#   // Threads  Any thread ...   a paragraph with that title. The lines behind it are indented by nine, or are titles
#                                as well, up to an empty line
#   //   indented by two         stands as it is
#   //  1. indented by one       an item of a list
#
# Bodies of functions are left alone. What Doxygen doesn't miss is reported on standard error: an enumerator without
# documentation, and a comment that belongs to nothing.

function trim(text)
{
    sub(/^[ \t]+/, "", text)
    sub(/[ \t]+$/, "", text)
    return text
}

# The code of a line, without literals and without its remark. `remarkAt` is where that begins, or 0.
function codeOf(line,    i, c, quote, code)
{
    remarkAt = 0
    for (i = 1; i <= length(line); ++i)
    {
        c = substr(line, i, 1)
        if (quote != "")
        {
            if (c == "\\")
                ++i
            else if (c == quote)
                quote = ""
            continue
        }
        if (substr(line, i, 2) == "//")
        {
            remarkAt = i
            break
        }
        if (c == "\"" || (c == "'" && code !~ /[0-9A-Fa-f]$/))
            quote = c
        code = code c
    }
    return code
}

function isRemark(line) { return line ~ /^[ \t]*\/\// }

# ---- The text of a comment ------------------------------------------------------------------------------------------

function escapePlain(text,    i, c, escaped)
{
    for (i = 1; i <= length(text); ++i)
    {
        c = substr(text, i, 1)
        if (substr(text, i) ~ /^::[A-Za-z]/ && substr(text, i - 1, 1) !~ /[A-Za-z0-9_]/)
        {
            escaped = escaped "::%" # what stands before it is no name, so there is nothing to link to
            ++i
        }
        else
            escaped = escaped (c in escapes ? escapes[c] : c)
    }
    return escaped
}

function escape(text,    parts, count, i, escaped)
{
    count = split(text, parts, "`")
    for (i = 1; i <= count; ++i)
        escaped = escaped (i % 2 ? escapePlain(parts[i]) : "<code>" escapePlain(parts[i]) "</code>")
    return escaped
}

# Ends the paragraph or the verbatim lines that are being gathered.
function flush()
{
    if (paragraph != "")
        rendered = rendered (inItems ? "<li>" : afterEmptyLine ? "<p>" : "") escape(paragraph) NewLine
    if (paragraph != "")
        afterEmptyLine = 0
    paragraph = ""
    if (inVerbatim)
        rendered = rendered "@endverbatim" NewLine
    inVerbatim = 0
}

function endItems()
{
    flush()
    if (inItems)
        rendered = rendered "</ol>" NewLine
    inItems = 0
}

# Ends what stands below a title.
function endTitled()
{
    endItems()
    if (inTitles)
        rendered = rendered "@endparblock" NewLine
}

function renderLine(text,    indent, base)
{
    match(text, /^ */)
    indent = RLENGTH
    base = inTitles ? 9 : 0
    if (text == "")
    {
        endTitled()
        inTitles = 0
        afterEmptyLine = 1
    }
    else if (text ~ /^ [0-9]+\. /)
    {
        flush()
        if (!inItems)
            rendered = rendered "<ol>" NewLine
        inItems = 1
        sub(/^ [0-9]+\. /, "", text)
        paragraph = text
    }
    else if (inItems && indent > 0)
        paragraph = paragraph " " trim(text)
    else if (indent >= base + 2)
    {
        if (!inVerbatim)
        {
            flush()
            rendered = rendered "@verbatim" NewLine
        }
        inVerbatim = 1
        gsub(/\*\//, "* /", text)
        rendered = rendered substr(text, base + 3) NewLine
    }
    else if (indent == 0 && (inTitles || text ~ /^[A-Z][A-Za-z]+  +[^ ]/))
    {
        endTitled()
        inTitles = 1
        afterEmptyLine = 0
        match(text, /^[^ ]+/)
        rendered = rendered "@par " escape(substr(text, 1, RLENGTH)) NewLine "@parblock" NewLine
        paragraph = trim(substr(text, RLENGTH + 1))
    }
    else
    {
        if (inVerbatim)
            flush()
        paragraph = paragraph (paragraph == "" ? "" : " ") trim(text)
    }
}

function render(from, to,    i, text)
{
    rendered = ""
    inTitles = afterEmptyLine = 0
    for (i = from; i <= to; ++i)
    {
        text = lines[i]
        sub(/^[ \t]*\/\/ ?/, "", text)
        renderLine(text)
    }
    endTitled()
    return rendered
}

# A remark as a sentence of its own.
function renderRemark(text)
{
    text = trim(text)
    return escape(toupper(substr(text, 1, 1)) substr(text, 2) (text ~ /[.!?]$/ ? "" : ".")) NewLine
}

function join(first, second) { return first (first != "" && second != "" ? "<p>" : "") second }

# ---- The code around it ---------------------------------------------------------------------------------------------

# A declaration without "template <...>" in front.
function bare(statement,    i, c, depth)
{
    statement = trim(statement)
    while (statement ~ /^template *</)
    {
        depth = 0
        for (i = index(statement, "<"); i <= length(statement); ++i)
        {
            c = substr(statement, i, 1)
            depth += (c == "<") - (c == ">")
            if (depth == 0)
                break
        }
        statement = trim(substr(statement, i + 1))
    }
    return statement
}

# f file or namespace, c class, e enumeration, o anything else that has braces.
function scopeOf(statement)
{
    statement = bare(statement)
    if (statement ~ /^(inline )?namespace/)
        return "f"
    if (statement ~ /^enum /)
        return "e"
    return statement ~ /^(class|struct|union) / && statement !~ /\(/ ? "c" : "o"
}

function classNameOf(statement)
{
    statement = bare(statement)
    sub(/ *:[^:].*$/, "", statement)
    sub(/ final *$/, "", statement)
    sub(/<.*$/, "", statement)
    statement = trim(statement)
    sub(/^.* /, "", statement)
    return statement
}

# Follows the braces of a line of code.
function track(code,    i, c)
{
    for (i = 1; i <= length(code); ++i)
    {
        c = substr(code, i, 1)
        if (c == "{")
        {
            ++depth
            scope[depth] = scope[depth - 1] == "o" ? "o" : scopeOf(current)
            className[depth] = classNameOf(current)
            current = ""
        }
        else if (c == "}")
        {
            --depth
            current = ""
        }
        else if (c == ";")
            current = ""
        else
            current = current c
    }
    current = scope[depth] == "e" || trim(current) == "" ? "" : current " "
}

# The declaration that begins in a line, up to its body or semicolon; `lastLine` is where it ends.
function statementAt(i,    code, statement)
{
    for (; i <= count; ++i)
    {
        code = codeOf(lines[i])
        statement = statement " " trim(code)
        if (scope[depth] == "e" || code ~ /[;{]/)
            break
    }
    lastLine = i
    return trim(statement)
}

function functionNameOf(statement)
{
    if (match(statement, /operator[^(]*/) || match(statement, /[~A-Za-z0-9_]+ *\(/))
        return trim(substr(statement, RSTART, RLENGTH - (substr(statement, RSTART + RLENGTH - 1, 1) == "(")))
    return ""
}

# What the copy and the move of a class have to say where its author says nothing.
function usualMember(statement,    name)
{
    name = className[depth]
    if (scope[depth] != "c")
        return ""
    if (index(statement, name "(const " name "&") || index(statement, "operator=(const " name "&"))
        return "Copies the object." NewLine
    if (index(statement, name "(" name "&&") || index(statement, "operator=(" name "&&"))
        return "Moves the object." NewLine
    return ""
}

# The documentation of a declaration whose comment, if it has one, is `pending`.
function documentationOf(statement, remark,    plain, name, kind, isRefused, text)
{
    plain = bare(statement)
    name = functionNameOf(plain)
    isRefused = plain ~ /= delete/ && (usualMember(plain) != "" || name != blockName)
    kind = scopeOf(plain) == "o" ? (name != "" ? "function" : "other") : "scope"
    text = pending
    if (text != "" && kind != "scope")
    {
        block = text
        blockName = name
        blockKind = kind
    }
    else if (text == "" && isRefused)
        return ""
    else if (text == "" && kind == blockKind && name !~ /^~/)
        text = block
    text = join(text, remark)
    pending = ""
    if (text == "" && scope[depth] == "e")
        report(i, "Enumerator " trim(statement) " is not documented.")
    return text == "" ? usualMember(plain) : text
}

function report(line, what)
{
    print FILENAME ":" line ": warning: " what | "cat >&2"
}

# What may stand between a comment and its declaration.
function isTransparent(statement)
{
    statement = bare(statement)
    return statement ~ /^(class|struct|union|enum( class)?) [^{(=]*;$/ || statement ~ /^(friend|static_assert)[ (]/ ||
           (statement ~ /^using / && statement !~ /=/)
}

function printDeclaration(    statement, last, remark, j, code, head)
{
    statement = statementAt(i)
    last = lastLine
    if (isTransparent(statement))
    {
        print lines[i]
        track(codeOf(lines[i]))
        return
    }

    code = codeOf(lines[last])
    if (remarkAt && (scope[depth] == "e" || code ~ /[;}] *$/))
    {
        head = remarkAt
        remark = substr(lines[last], head + 2)
        lines[last] = substr(lines[last], 1, head - 1)
        sub(/ +$/, "", lines[last])
        for (j = last + 1; isRemark(lines[j]) && match(lines[j], /\/\//) && RSTART == head; ++j)
        {
            remark = remark " " trim(substr(lines[j], head + 2))
            lines[j] = ""
            isTaken[j] = 1
        }
        remark = renderRemark(remark)
    }

    remark = documentationOf(statement, remark)
    match(lines[i], /^[ \t]*/)
    head = substr(lines[i], 1, RLENGTH)
    code = substr(lines[i], RLENGTH + 1)
    sub(/ requires [A-Za-z:]+$/, "", code) # Doxygen would take it for a member
    print head (remark == "" ? "" : "/** " remark "*/ ") code
    track(codeOf(lines[i]))
}

function printComment(    last, nextLine, j)
{
    for (last = i; isRemark(lines[last + 1]); ++last)
        ;
    nextLine = trim(lines[last + 1])
    pending = render(i, last)
    block = ""
    if (nextLine == "" || nextLine ~ /^#[ \t]*include/)
    {
        if (scope[depth] == "c")
            report(i, "This comment belongs to nothing.")
        print "/** @file" NewLine pending "*/"
        pending = ""
    }
    else
        print ""
    for (j = i + 1; j <= last; ++j)
        print ""
    i = last
}

function printPreprocessorLine()
{
    if (lines[i] ~ /^[ \t]*#[ \t]*define/ && join(pending, block) != "")
    {
        block = pending == "" ? block : pending
        pending = ""
        print "/** " block "*/"
    }
    print lines[i] (lines[i] ~ /^#pragma once/ ? " /** @file */" : "")
    while (lines[i] ~ /\\$/)
        print lines[++i]
}

BEGIN {
    NewLine = "\\ilinebr "
    escapes["&"] = "&amp;"
    escapes["<"] = "&lt;"
    escapes[">"] = "&gt;"
    escapes["\\"] = "\\\\"
    escapes["@"] = "\\@"
    escapes["#"] = "\\#"
    escapes["%"] = "\\%"
    escapes["\""] = "\\\"" # between plain quotes nothing is looked at, the escapes here neither
    scope[0] = "f"
}

{ lines[NR] = $0 }

END {
    count = NR
    for (i = 1; i <= count; ++i)
    {
        line = trim(lines[i])
        if (scope[depth] == "o" || trim(current) != "")
        {
            print lines[i]
            track(codeOf(lines[i]))
        }
        else if (line == "")
        {
            if (pending != "")
                report(i - 1, "This comment belongs to nothing.")
            pending = ""
            if (!isTaken[i])
                block = ""
            print ""
        }
        else if (isRemark(line))
            printComment()
        else if (line ~ /^#/)
            printPreprocessorLine()
        else if (line ~ /^(public|protected|private):$/)
        {
            block = ""
            print lines[i]
        }
        else if (line ~ /^[{}]/)
        {
            block = ""
            print lines[i]
            track(codeOf(lines[i]))
        }
        else
            printDeclaration()
    }
}
