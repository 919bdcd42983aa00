#pragma once

#include <memory>
#include <utility>

#include "../Platform/Export.h"

#include "Groundwork/CbPlexManager.h"

/// @file
/// How a table comes to the pool that its nodes are drawn from. A table derives from one of these policies, which have
/// the table, its nodes and the type that counts them as arguments:
///
/// - CbMapPolicyInline: a pool of its own, which dies with it
/// - CbMapPolicyPlexManager: a pool shared by many tables, which dies with the last of its owners

/// Raises CbExceptionContainer, with that function name, for a table that may not change its pool any more.
[[noreturn]] VELLUM_API void CbRaisePoolInUse(const char* functionName);

/// CbMapPolicyInline: a table has a pool of its own, which dies with it.
template <class Map, class Element, int, int, class Size>
class CbMapPolicyInline
{
protected:
    /// Where the nodes come from.
    using Pool = CbPlexManager<Element, 0, Size>;

    /// The number of nodes in the pool's first block.
    explicit CbMapPolicyInline(Size firstBlockSize = 128) : pool(firstBlockSize) {}

    /// The table's pool. It lives as long as the table.
    Pool& getPool() { return pool; }

private:
    Pool pool;
};

/// CbMapPolicyPlexManager: a table shares a pool with others, and starts with a fresh one of its own. The pool keeps
/// the memory of destroyed tables until it dies, with the last handle.
///
/// - **Threads** All tables of one pool belong to one thread together; only the handle's count is atomic.
template <class Map, class Element, int, int, class Size>
class CbMapPolicyPlexManager
{
public:
    /// What tables share.
    using Pool = CbPlexManager<Element, 0, Size>;

    /// Replaces the pool of a table that is still empty. Otherwise CbExceptionContainer with the full name of this
    /// operation, template arguments included, and the table keeps its pool. The handle must not be null.
    void SetPlexManager(std::shared_ptr<Pool> handle)
    {
        if (static_cast<const Map&>(*this).GetCount() != 0)
            CbRaisePoolInUse(FunctionName().GetString());
        pool = std::move(handle);
    }

protected:
    /// The pool that the table draws on, made now if it has none.
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
