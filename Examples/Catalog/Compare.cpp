#include "Compare.h"

#include <ostream>
#include <string>
#include <vector>

namespace
{

// A value as text, for the message alone.
std::string Show(const std::string& text) { return '"' + text + '"'; }
std::string Show(const std::wstring& text) { return Show(Vellum::Encodings::ToUTF8(text)); }
std::string Show(const CbDateTime& date) { return Vellum::Encodings::ToUTF8(date.ToString(L"Y-m-dTH:i:s.v", false)); }
std::string Show(const std::vector<unsigned char>& bytes) { return std::to_string(bytes.size()) + " bytes"; }
std::string Show(char character) { return Show(std::string(1, character)); }
template <class Number>
std::string Show(Number number)
{
    return std::to_string(number);
}

bool AreEqual(const CbDateTime& first, const CbDateTime& second) { return first.ToFileTime() == second.ToFileTime(); }
template <class T>
bool AreEqual(const T& first, const T& second)
{
    return first == second;
}

class CComparison
{
public:
    explicit CComparison(std::ostream& out) : out(out) {}

    std::size_t GetCount() const { return count; }
    void Folder(const std::string& path, const CCatalogFolder& expected, const CCatalogFolder& actual);

private:
    template <class T>
    void field(const std::string& path, const char* name, const T& expected, const T& actual);
    template <class Object, class Operation>
    void sequence(const std::string& path, const char* name, const CObjects<Object>& expected,
                  const CObjects<Object>& actual, Operation compareItems);
    void file(const std::string& path, const CCatalogFile& expected, const CCatalogFile& actual);
    void profile(const std::string& path, const CTextProfile& expected, const CTextProfile& actual);

    std::ostream& out;
    std::size_t count = 0;
};

template <class T>
void CComparison::field(const std::string& path, const char* name, const T& expected, const T& actual)
{
    if (AreEqual(expected, actual))
        return;
    ++count;
    out << path << '.' << name << ": " << Show(actual) << " in place of " << Show(expected) << '\n';
}

template <class Object, class Operation>
void CComparison::sequence(const std::string& path, const char* name, const CObjects<Object>& expected,
                           const CObjects<Object>& actual, Operation compareItems)
{
    field(path, name, expected.items.size(), actual.items.size());
    for (std::size_t at = 0; at < expected.items.size() && at < actual.items.size(); ++at)
        (this->*compareItems)(path + '/' + Vellum::Encodings::ToUTF8(expected.items[at].name), expected.items[at],
                              actual.items[at]);
}

void CComparison::profile(const std::string& path, const CTextProfile& expected, const CTextProfile& actual)
{
    field(path, "lineCount", expected.lineCount, actual.lineCount);
    field(path, "blankShare", expected.blankShare, actual.blankShare);
    field(path, "entropy", expected.entropy, actual.entropy);
    field(path, "commonestByte", expected.commonestByte, actual.commonestByte);
    field(path, "lineEnds", expected.lineEnds, actual.lineEnds);
    field(path, "openBrackets", expected.openBrackets, actual.openBrackets);
    for (std::size_t at = 0; at < expected.lineLengths.counts.size(); ++at)
        field(path, "lineLengths", expected.lineLengths.counts[at], actual.lineLengths.counts[at]);
}

void CComparison::file(const std::string& path, const CCatalogFile& expected, const CCatalogFile& actual)
{
    field(path, "name", expected.name, actual.name);
    field(path, "extension", expected.extension, actual.extension);
    field(path, "type", expected.type, actual.type);
    field(path, "isHidden", expected.isHidden, actual.isHidden);
    field(path, "permissions", expected.permissions, actual.permissions);
    field(path, "size", expected.size, actual.size);
    field(path, "sizeAboveAverage", expected.sizeAboveAverage, actual.sizeAboveAverage);
    field(path, "ageInDays", expected.ageInDays, actual.ageInDays);
    field(path, "modified", expected.modified, actual.modified);
    field(path, "head", expected.head, actual.head);
    profile(path, expected.profile, actual.profile);
}

void CComparison::Folder(const std::string& path, const CCatalogFolder& expected, const CCatalogFolder& actual)
{
    field(path, "name", expected.name, actual.name);
    field(path, "depth", expected.depth, actual.depth);
    field(path, "totalSize", expected.totalSize, actual.totalSize);
    field(path, "modified", expected.modified, actual.modified);
    sequence(path, "files", expected.files, actual.files, &CComparison::file);
    sequence(path, "folders", expected.folders, actual.folders, &CComparison::Folder);
}

} // namespace

std::size_t Compare(const CCatalogFolder& expected, const CCatalogFolder& actual, std::ostream& out)
{
    CComparison comparison(out);
    comparison.Folder(Vellum::Encodings::ToUTF8(expected.name), expected, actual);
    return comparison.GetCount();
}
