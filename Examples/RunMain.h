#pragma once

#include <exception>
#include <iostream>

// Calls the body of a program and returns the program's exit code: what the body returns, or 1 if it raises, and then
// standard error tells what went wrong.
template <class Body>
int RunMain(const char* program, const Body& body)
{
    try
    {
        return body();
    }
    catch (const std::exception& exception) // the library's are such as well
    {
        std::cerr << program << ": " << exception.what() << '\n';
    }
    return 1;
}
