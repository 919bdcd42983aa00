#include "Model/Visitor.h"

#include <bit>
#include <cstring>
#include <new>
#include <typeinfo>

#include "Groundwork/IException.h"

#include "Model/Values.h"

namespace Model
{

std::string Show(bool value) { return value ? "true" : "false"; }
std::string Show(char value) { return "char " + std::to_string(static_cast<unsigned char>(value)); }
std::string Show(std::int64_t value) { return std::to_string(value); }
std::string Show(std::uint64_t value) { return std::to_string(value); }
std::string Show(double value) { return "bits " + std::to_string(std::bit_cast<std::uint64_t>(value)); }

std::string Show(const std::string& value) { return std::to_string(value.size()) + " bytes " + value; }

std::string Show(const std::wstring& value)
{
    std::string text = "units";
    for (const wchar_t unit : value)
        text += ' ' + std::to_string(static_cast<std::uint32_t>(unit));
    return text;
}

std::string Show(const SDate& value)
{
    std::string text = "date";
    for (const unsigned short field : value.fields)
        text += ' ' + std::to_string(field);
    return text;
}

std::string ShowRaised()
{
    try
    {
        throw;
    }
    catch (const SRaised& raised)
    {
        return std::string(raised.className) + ' ' + raised.function;
    }
    catch (const IException& exception)
    {
        // The compiler's name of a class has its length in front.
        const std::string name = typeid(exception).name();
        for (const char* const known :
             {Exception, ConversionException, StreamException, VersionException, MemoryException})
            if (name.find(std::to_string(std::strlen(known)) + known) != std::string::npos)
                return std::string(known) + ' ' + exception.GetFunctionName();
        return name;
    }
    catch (const std::bad_alloc&)
    {
        return "no memory";
    }
    catch (const SClientFailure&)
    {
        return "the client's";
    }
}

} // namespace Model
