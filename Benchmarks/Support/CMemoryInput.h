#pragma once

#include <istream>
#include <streambuf>
#include <string>

namespace Support
{

// Lets a peer that reads from a std::istream read a document where it is, without the copy of std::istringstream.
class CMemoryInput : public std::istream
{
public:
    explicit CMemoryInput(const std::string& document) : std::istream(nullptr), buffer(document) { rdbuf(&buffer); }

private:
    struct SBuffer : std::streambuf
    {
        explicit SBuffer(const std::string& document)
        {
            char* const data = const_cast<char*>(document.data()); // an input buffer doesn't write to it
            setg(data, data, data + document.size());
        }
    };

    SBuffer buffer;
};

} // namespace Support
