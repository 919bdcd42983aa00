#pragma once

#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Model/Tree.h"

namespace Model
{

std::string Show(bool value);
std::string Show(char value);
std::string Show(std::int64_t value);
std::string Show(std::uint64_t value);
std::string Show(double value); // by its bits
std::string Show(const std::string& value);
std::string Show(const std::wstring& value);
std::string Show(const SDate& value);
template <class T>
std::string Show(T value)
{
    using Widest = std::conditional_t<std::is_floating_point_v<T>, double,
                                      std::conditional_t<std::is_signed_v<T>, std::int64_t, std::uint64_t>>;
    return Show(static_cast<Widest>(value));
}

// The class and function name of the exception that is being handled, the model's or the library's.
std::string ShowRaised();

// A client that asks for everything: each key or index in each kind, nested parts as well, and notes all that it is
// told. It is driven by readers of the library and by those of the models alike, which have
//
//   GetKeyCount() and GetKey(index)    objects alone
//   Read(key or index, T& value)       for each kind but blobs
//   Read(key or index, SNested value)  an object or a sequence, which is handed on to value.Visit
//   GetBlob(key or index)              twice the same, or empty
//
// It stops when its notes have grown long, so that a part that can be read as an object and as a sequence, at each of
// many levels, comes to an end.
class CVisitor
{
public:
    // Asks for these keys too, in each object. Failures end nested reads unless they are caught at each value.
    CVisitor(std::vector<std::string> moreKeys, std::string typeName, bool isCatchingEach)
        : moreKeys(std::move(moreKeys)), typeName(std::move(typeName)), isCatchingEach(isCatchingEach)
    {
    }

    // Runs a part of the test, and notes what it raises.
    template <class Body>
    void Run(const Body& body)
    {
        try
        {
            body();
        }
        catch (...)
        {
            notes += "! " + ShowRaised() + '\n';
        }
    }

    template <class Reader>
    void VisitObject(Reader& reader)
    {
        const std::uint32_t count = reader.GetKeyCount();
        note(Show(count) + " keys");
        std::vector<std::string> keys;
        for (std::uint32_t i = 0; i < count; ++i)
            keys.emplace_back(reader.GetKey(i));
        keys.insert(keys.end(), moreKeys.begin(), moreKeys.end());
        Asked asked{};
        for (std::size_t i = 0; i < keys.size() && !isFull(); ++i)
            askAll(reader, keys[i].c_str(), keys[i], i, asked);
    }

    template <class Reader>
    void VisitSequence(Reader& reader)
    {
        note("elements");
        Asked asked{};
        std::size_t misses = 0;
        for (std::uint32_t i = 0; misses < 3 && !isFull(); ++i)
            misses = askAll(reader, i, std::to_string(i), i, asked) ? 0 : misses + 1;
        askAll(reader, std::numeric_limits<std::uint32_t>::max(), "last", 0, asked);
    }

    const std::string& GetTypeName() const { return typeName; }
    const std::string& GetNotes() const { return notes; }

    // A nested part, asked for as an object or as a sequence.
    template <bool IsSequence>
    struct SNested
    {
        CVisitor& visitor;
        template <class Reader>
        void Visit(Reader& reader) const
        {
            if constexpr (IsSequence)
                visitor.VisitSequence(reader);
            else
                visitor.VisitObject(reader);
        }
    };

private:
    using Asked = std::array<bool, Kinds>; // the kinds that something was found in, at one level
    static constexpr std::size_t Often = 24, MostNotes = 40000;

    bool isFull() const { return notes.size() > MostNotes; }
    void note(const std::string& text) { notes += std::string(depth, ' ') + text + '\n'; }

    // Asks for each of the first in all kinds, later in those that have been seen. True if anything was found.
    template <class Reader, class Name>
    bool askAll(Reader& reader, Name name, const std::string& shown, std::size_t place, Asked& asked)
    {
        bool isFound = false;
        for (std::size_t kind = 0; kind < Kinds && !isFull(); ++kind)
            if (place < Often || asked[kind])
            {
                const std::size_t before = notes.size();
                if (depth > 0 && !isCatchingEach)
                    ask(reader, name, kind);
                else
                    Run([&] { ask(reader, name, kind); });
                if (notes.size() == before)
                    continue;
                asked[kind] = isFound = true;
                notes.insert(before, std::string(depth, ' ') + shown + " as " + std::to_string(kind) + ": ");
            }
        return isFound;
    }

    template <class Reader, class Name>
    void ask(Reader& reader, Name name, std::size_t kind)
    {
        const auto askOne = [&]<class T>()
        {
            if constexpr (std::is_same_v<T, Part>)
                kind == KindObject ? askNested<false>(reader, name) : askNested<true>(reader, name);
            else if constexpr (std::is_same_v<T, SBlob>)
                askBlob(reader, name);
            else
                askValue<T>(reader, name);
        };
        WithKind(kind, askOne);
    }

    template <class T, class Reader, class Name>
    void askValue(Reader& reader, Name name)
    {
        T value{};
        if constexpr (std::is_arithmetic_v<T>)
            value = T{1};
        const T before = value;
        if (reader.Read(name, value))
            notes += Show(value) + '\n';
        else if (!(value == before))
            notes += "changed to " + Show(value) + '\n';
    }

    template <bool IsSequence, class Reader, class Name>
    void askNested(Reader& reader, Name name)
    {
        const std::size_t before = notes.size();
        ++depth;
        bool isFound = false;
        try
        {
            isFound = reader.Read(name, SNested<IsSequence>{*this});
        }
        catch (...)
        {
            --depth;
            throw;
        }
        --depth;
        if (isFound != (notes.size() != before))
            notes += isFound ? "true without a visit\n" : "false after a visit\n";
    }

    template <class Reader, class Name>
    void askBlob(Reader& reader, Name name)
    {
        const auto blob = reader.GetBlob(name);
        if (blob.first != blob.second)
            notes += Show(std::string(blob.first, blob.second)) + '\n';
        if (blob != reader.GetBlob(name))
            notes += "another blob\n";
    }

    std::vector<std::string> moreKeys;
    std::string typeName;
    bool isCatchingEach;
    std::size_t depth = 0;
    std::string notes;
};

} // namespace Model
