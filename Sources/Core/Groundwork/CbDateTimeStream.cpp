#include "Groundwork/CbDateTimeStream.h"

#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbStreamReadBinary.h"
#include "Groundwork/CbStreamWriteBinary.h"

namespace
{

constexpr unsigned int Version = 0;

} // namespace

CbStreamWriteBinary& operator<<(CbStreamWriteBinary& stream, const IDateTime& date)
{
    stream.Write(Version);
    stream.Write(CbDateTime(date).ToFileTime());
    return stream;
}

CbStreamReadBinary& operator>>(CbStreamReadBinary& stream, IDateTime& date)
{
    std::uint64_t ticks = 0;
    stream.ReadAndCompareVersion(Version);
    stream.Read(ticks);
    date.IDateTime::operator=(CbDateTime(ticks)); // the seven setters, whatever the class makes of assignment
    return stream;
}
