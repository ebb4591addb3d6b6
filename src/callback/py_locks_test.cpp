// SPDX-License-Identifier: MIT
#include "callback/py_locks.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "callback/py_callback.h"
#include "callback/testing/interpreter.h"
#include "callback/testing/plain_callback.h"

namespace {

class PyLocksTest : public testing::Test {
  protected:
    Interpreter interpreter;
};

TEST_F(PyLocksTest, AllowThreadsReleasesAndTakesTheLock) {
    ASSERT_TRUE(holdsInterpreterLock());
    {
        const PyAllowThreads allowThreads;
        EXPECT_FALSE(holdsInterpreterLock());
    }
    EXPECT_TRUE(holdsInterpreterLock());
}

TEST_F(PyLocksTest, AllowThreadsThatIsNotWorthItDoesNothing) {
    const PyAllowThreads allowThreads(false);
    EXPECT_TRUE(holdsInterpreterLock());
}

TEST_F(PyLocksTest, AllowThreadsInsideItselfDoesNothing) {
    const PyAllowThreads outer;
    {
        const PyAllowThreads inner;
        EXPECT_FALSE(holdsInterpreterLock());
    }
    EXPECT_FALSE(holdsInterpreterLock());
}

TEST_F(PyLocksTest, AllowThreadsOnAForeignThreadDoesNothing) {
    std::thread([] {
        const PyAllowThreads allowThreads;
        EXPECT_FALSE(holdsInterpreterLock());
    }).join();
    EXPECT_TRUE(holdsInterpreterLock());
}

TEST_F(PyLocksTest, TheGuardNests) {
    const PyGILGuard outer;
    const PyGILGuard inner;
    EXPECT_TRUE(outer);
    EXPECT_TRUE(inner);
    EXPECT_TRUE(holdsInterpreterLock());
}

TEST_F(PyLocksTest, TheGuardTakesTheLockInsideAllowThreads) {
    const PyAllowThreads allowThreads;
    {
        const PyGILGuard lock;
        EXPECT_TRUE(lock);
        EXPECT_TRUE(holdsInterpreterLock());
        {
            const PyAllowThreads inner;
            EXPECT_FALSE(holdsInterpreterLock());
        }
        EXPECT_TRUE(holdsInterpreterLock());
    }
    EXPECT_FALSE(holdsInterpreterLock());
}

TEST_F(PyLocksTest, TheGuardWorksOnAThreadThatPythonHasNeverSeen) {
    const PyAllowThreads allowThreads;
    std::thread([] {
        {
            const PyGILGuard lock;
            EXPECT_TRUE(lock);
            EXPECT_TRUE(holdsInterpreterLock());
            Interpreter::run("seen.append('here')");
        }
        EXPECT_FALSE(holdsInterpreterLock());
        EXPECT_EQ(PyGILState_GetThisThreadState(), nullptr);
    }).join();
    const PyGILGuard lock;
    EXPECT_EQ(Interpreter::text("seen"), "['here']");
}

TEST_F(PyLocksTest, WithoutACallableNoLockIsTaken) {
    // With the lock held here, a thread that wanted it would never come back.
    const PlainCallback callback;
    std::thread([&callback] {
        callback.Call("i", 1);
        EXPECT_EQ(callback.CallInt("i", 1), 0);
    }).join();
}

TEST_F(PyLocksTest, EventsOfManyThreadsAllArrive) {
    constexpr int kThreads = 4;
    constexpr int kEvents = 200;
    PlainCallback callback;
    callback.SetCallback(Interpreter::value("seen.append").get());
    {
        const PyAllowThreads allowThreads;
        std::vector<std::thread> threads;
        for (int thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&callback, thread] {
                for (int event = 0; event < kEvents; ++event)
                    callback.Call("i", thread * kEvents + event);
            });
        }
        for (std::thread &thread : threads)
            thread.join();
    }
    EXPECT_EQ(Interpreter::number("sorted(seen) == range(800)"), 1);
    // Each thread's own events keep their order.
    EXPECT_EQ(Interpreter::number(
                  "all([c for c in seen if c // 200 == t] == range(t * 200, t * 200 + 200) for t in range(4))"),
              1);
}

TEST_F(PyLocksTest, TheCallableMayBeReplacedWhileOthersDeliver) {
    PlainCallback callback;
    const PyRef append = Interpreter::value("seen.append");
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 2; ++thread) {
        threads.emplace_back([&callback, &stop] {
            while (!stop)
                callback.Call("i", 1);
        });
    }
    for (int round = 0; round < 2000; ++round) {
        callback.SetCallback(round % 2 ? Py_None : append.get());
        if (round % 10 == 0) {
            const PyAllowThreads allowThreads;
            std::this_thread::yield();
        }
    }
    callback.SetCallback(nullptr);
    {
        const PyAllowThreads allowThreads;
        stop = true;
        for (std::thread &thread : threads)
            thread.join();
    }
    EXPECT_EQ(Py_REFCNT(append.get()), 1);
    EXPECT_EQ(Interpreter::errors(), "");
}

} // namespace
