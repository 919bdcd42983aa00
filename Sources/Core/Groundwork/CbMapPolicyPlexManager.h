#pragma once

#include <memory>
#include <utility>

#include "Platform/Export.h"

#include "Groundwork/CbPlexManager.h"

// How a table comes to the pool that its nodes are drawn from. A table derives from one of these policies:
//
//   CbMapPolicyInline        a pool of its own, which dies with it
//   CbMapPolicyPlexManager   a pool shared by many tables, which dies with the last of its owners
//   CbMapPolicyBorrowed      a pool that somebody else keeps alive; the table's nodes go back to it

// Raises CbExceptionContainer for a table that may not change its pool any more.
[[noreturn]] VELLUM_API void CbRaisePoolInUse(const char* functionName);

template <class Map, class Element, int, int, class Size>
class CbMapPolicyInline
{
protected:
    using Pool = CbPlexManager<Element, 0, Size>;
    static constexpr bool RecyclesNodes = false;

    explicit CbMapPolicyInline(Size firstBlockSize = 128) : pool(firstBlockSize) {}
    Pool& getPool() { return pool; }

private:
    Pool pool;
};

// A table starts with a fresh pool of its own. The pool keeps the memory of destroyed tables until it dies.
//
// Threads  All tables of one pool belong to one thread together; only the handle's count is atomic.
template <class Map, class Element, int, int, class Size>
class CbMapPolicyPlexManager
{
public:
    using Pool = CbPlexManager<Element, 0, Size>;

    // Replaces the pool of a table that is still empty. Otherwise CbExceptionContainer with the full name of this
    // operation, and the table keeps its pool. The handle must not be null.
    void SetPlexManager(std::shared_ptr<Pool> handle)
    {
        if (static_cast<const Map&>(*this).GetCount() != 0)
            CbRaisePoolInUse(FunctionName().GetString());
        pool = std::move(handle);
    }

protected:
    static constexpr bool RecyclesNodes = false;

    Pool& getPool()
    {
        if (!pool)
            pool = std::make_shared<Pool>();
        return *pool;
    }

private:
    // A function, since the name of the table can only be spelled once the table is complete.
    static const auto& FunctionName()
    {
        static constexpr auto Name =
            CbSpellTemplate<CbTypeName<Map>, CbTypeName<Element>, CbZeroName, CbZeroName, CbTypeName<Size>>(
                CbText("CbMapPolicyPlexManager")) +
            "::SetPlexManager";
        return Name;
    }

    std::shared_ptr<Pool> pool; // null stands for the fresh pool until somebody draws on it
};

template <class Map, class Element, int, int, class Size>
class CbMapPolicyBorrowed
{
protected:
    using Pool = CbPlexManager<Element, 0, Size>;
    static constexpr bool RecyclesNodes = true;

    explicit CbMapPolicyBorrowed(Pool& pool) : pool(&pool) {}
    Pool& getPool() { return *pool; }

private:
    Pool* pool;
};
