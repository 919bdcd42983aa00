#include <functional>
#include <pthread.h>
#include <sstream>

#include "Vellum/Vellum.h"

#include "Support/Clients.h"
#include "Support/Posix/EndingThreads.h"
#include "Support/Testing.h"

namespace
{

template <class Writer>
class TextWriters : public testing::Test
{
};
using Both = testing::Types<Vellum::CWriterJson, Vellum::CWriterXml>;
TYPED_TEST_SUITE(TextWriters, Both);

TYPED_TEST(TextWriters, AThreadMayEndInAClient)
{
    if (!Support::EndingThreadsUnwind)
        GTEST_SKIP() << "No thread may end in the midst of its functions.";
    struct SOwnLocale // of the thread
    {
        ~SOwnLocale() { EXPECT_TRUE(german.IsInForce()); }
        CGermanThread german;
    };
    for (const bool isObject : {true, false})
        for (const bool isCancelled : {true, false})
        {
            std::function<void()> body = [&]
            {
                const SOwnLocale locale;
                const auto end = [&]
                {
                    if (!isCancelled)
                        ::pthread_exit(nullptr);
                    ::pthread_cancel(::pthread_self());
                    ::pthread_testcancel();
                };
                std::ostringstream stream;
                isObject ? TypeParam(stream).Write(CFields([&](Vellum::IDataWriter&) { end(); }))
                         : TypeParam(stream).Write(CElements([&](Vellum::IContainerWriter&) { end(); }));
                ADD_FAILURE() << "went on";
            };
            const auto run = [](void* given) { return ((*static_cast<std::function<void()>*>(given))(), given); };
            ::pthread_t thread;
            void* result = &body;
            ASSERT_EQ(::pthread_create(&thread, nullptr, run, &body), 0);
            ::pthread_join(thread, &result);
            EXPECT_EQ(result == PTHREAD_CANCELED, isCancelled);
        }
}

} // namespace
