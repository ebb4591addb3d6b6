// SPDX-License-Identifier: MIT
#include "platform/class_factories.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/com_pointer.h"

namespace platform {
namespace {

// Classes that no machine has registered.
constexpr GUID kClass = {0x6C1B7A10, 0x52E4, 0x4D0B, {0x9F, 0x31, 0x0A, 0x5E, 0x77, 0x21, 0xC3, 0x01}};
constexpr GUID kOtherClass = {0x6C1B7A10, 0x52E4, 0x4D0B, {0x9F, 0x31, 0x0A, 0x5E, 0x77, 0x21, 0xC3, 0x02}};
constexpr GUID kInterface = {0x6C1B7A10, 0x52E4, 0x4D0B, {0x9F, 0x31, 0x0A, 0x5E, 0x77, 0x21, 0xC3, 0x03}};

int answer = 0;

HRESULT makeAnswer(const GUID &iid, void **object) {
    EXPECT_EQ(iid, kInterface);
    EXPECT_EQ(*object, nullptr) << "the out-pointer is cleared before the factory is asked";
    *object = &answer;
    return S_OK;
}

HRESULT refuse(const GUID &, void **) {
    return E_NOINTERFACE;
}

/// Withdraws this test's factories on every path.
class ClassFactoriesTest : public testing::Test {
  protected:
    ~ClassFactoriesTest() override {
        registerClassFactory(kClass, nullptr);
        registerClassFactory(kOtherClass, nullptr);
    }
};

TEST_F(ClassFactoriesTest, RegisteredFactoryMakesTheObject) {
    EXPECT_EQ(registerClassFactory(kClass, &makeAnswer), nullptr);
    void *object = &object;
    EXPECT_EQ(createInstance(kClass, kInterface, &object), S_OK);
    EXPECT_EQ(object, &answer);
}

TEST_F(ClassFactoriesTest, TheFactorysErrorIsTheResult) {
    registerClassFactory(kClass, &refuse);
    void *object = &object;
    EXPECT_EQ(createInstance(kClass, kInterface, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
}

TEST_F(ClassFactoriesTest, ClassesAreToldApart) {
    registerClassFactory(kClass, &makeAnswer);
    registerClassFactory(kOtherClass, &refuse);
    EXPECT_EQ(findClassFactory(kClass), &makeAnswer);
    EXPECT_EQ(findClassFactory(kOtherClass), &refuse);
}

TEST_F(ClassFactoriesTest, RegistrationReturnsWhatItReplacesAndNullWithdraws) {
    registerClassFactory(kClass, &makeAnswer);
    EXPECT_EQ(registerClassFactory(kClass, &refuse), &makeAnswer);
    EXPECT_EQ(registerClassFactory(kClass, nullptr), &refuse);
    EXPECT_EQ(registerClassFactory(kClass, nullptr), nullptr);
    EXPECT_EQ(findClassFactory(kClass), nullptr);
}

TEST_F(ClassFactoriesTest, UnknownClassFailsAndClearsTheOutPointer) {
    void *object = &object;
    EXPECT_TRUE(FAILED(createInstance(kOtherClass, kInterface, &object)));
    EXPECT_EQ(object, nullptr);
}

TEST_F(ClassFactoriesTest, NullOutPointerIsRefused) {
    registerClassFactory(kClass, &makeAnswer);
    EXPECT_EQ(createInstance(kClass, kInterface, nullptr), E_POINTER);
}

TEST_F(ClassFactoriesTest, ThreadsMayRegisterAndCreateAtOnce) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([] {
            for (int i = 0; i < 200; ++i) {
                registerClassFactory(kClass, i % 2 ? &refuse : nullptr);
                void *object = nullptr;
                EXPECT_TRUE(FAILED(createInstance(kClass, kInterface, &object)));
            }
        });
    for (std::thread &thread : threads)
        thread.join();
}

/// Counts its references.
struct Counted {
    int references = 1;
    void Release() { --references; }
};

TEST(ComPointerTest, GivesEveryReferenceBackOnce) {
    Counted first;
    Counted second;
    {
        ComPointer<Counted> pointer(&first);
        ComPointer<Counted> moved(std::move(pointer));
        EXPECT_FALSE(pointer);
        EXPECT_EQ(moved.get(), &first);
        EXPECT_EQ(first.references, 1);
        moved.reset(&second);
        EXPECT_EQ(first.references, 0);
        pointer = std::move(moved);
        EXPECT_EQ(pointer->references, 1);
    }
    EXPECT_EQ(first.references, 0);
    EXPECT_EQ(second.references, 0);
}

TEST(ComPointerTest, OutParameterReleasesWhatIsHeld) {
    Counted first;
    Counted second;
    ComPointer<Counted> pointer(&first);
    *pointer.put() = &second;
    EXPECT_EQ(first.references, 0);
    EXPECT_EQ(pointer.get(), &second);
}

} // namespace
} // namespace platform
