#include "Model/Visitor.h"

#include <bit>
#include <new>

#include "Groundwork/CbExceptions.h"

#include "Vellum/CException.h"

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
    const auto show = [](const char* className, const IException& exception)
    { return std::string(className) + ' ' + exception.GetFunctionName(); };
    try
    {
        throw;
    }
    catch (const SRaised& raised)
    {
        return std::string(raised.className) + ' ' + raised.function;
    }
    catch (const Vellum::CException& exception)
    {
        return show("CException", exception);
    }
    catch (const CbExceptionConversion& exception)
    {
        return show("CbExceptionConversion", exception);
    }
    catch (const CbExceptionStream& exception)
    {
        return show("CbExceptionStream", exception);
    }
    catch (const CbExceptionWrongFileVersion& exception)
    {
        return show("CbExceptionWrongFileVersion", exception);
    }
    catch (const SClientFailure&)
    {
        return "the client's";
    }
    catch (const std::exception& exception)
    {
        return exception.what();
    }
}

} // namespace Model
