#pragma once

namespace Vellum::Platform
{

// A thread that ends in the midst of its functions, because it was cancelled or says so itself, has its stack unwound
// by the system. A `catch (...)` meets that like an exception, but must not end it: the system ends the process then.

// Called first in a `catch (...)` that doesn't raise again what it has caught. Goes on unwinding if the thread is
// ending, and returns with nothing changed if it is an exception that was caught.
void PassForcedUnwind();

// CNoCancellation: for as long as it lives, the calling thread isn't cancelled. It stands around system calls in what
// is noexcept, where unwinding would end the process. The request stays, for the next place that can take it.
class CNoCancellation
{
public:
    CNoCancellation() noexcept;
    ~CNoCancellation();
    CNoCancellation(const CNoCancellation&) = delete;
    CNoCancellation& operator=(const CNoCancellation&) = delete;

private:
    int before; // the system's
};

} // namespace Vellum::Platform
