// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/NSView.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <type_traits>

namespace {

using zel::NSObject;

TEST(Object, InitialisingAnswersTheObjectItself) {
    const auto object = zel::alloc<NSObject>();
    EXPECT_EQ(object->init(), object);
}

TEST(Object, TheInitialiserOfASubclassRunsAndMayAnswerNothing) {
    class Refusing : public NSObject {
    public:
        bool asked = false;
        std::shared_ptr<NSObject> init() override {
            asked = true;
            return nullptr;
        }
    };
    const auto object = zel::alloc<Refusing>();
    const std::shared_ptr<NSObject> base = object;
    EXPECT_EQ(base->init(), nullptr);
    EXPECT_TRUE(object->asked);
}

TEST(Object, AnObjectIsNotStyleableUnlessItsClassSaysSo) {
    EXPECT_EQ(zel::alloc<NSObject>()->asZelStyleable(), nullptr);
    const auto view = zel::alloc<zel::NSView>();
    EXPECT_EQ(view->asZelStyleable(), static_cast<const zel::ZelStyleable*>(view.get()));
}

TEST(Object, ACallThatItsClassDoesNotAnswerRaises) {
    const auto object = zel::alloc<NSObject>();
    EXPECT_THROW(object->styleChangedWithEvent(nullptr, zel::ZelStyleChangeEventChanged),
                 std::logic_error);
}

TEST(Object, AnObjectHasIdentityAndIsNeitherCopiedNorMoved) {
    static_assert(!std::is_copy_constructible_v<NSObject>);
    static_assert(!std::is_move_constructible_v<NSObject>);
    static_assert(!std::is_copy_assignable_v<NSObject>);
    static_assert(!std::is_move_assignable_v<NSObject>);
    static_assert(std::has_virtual_destructor_v<NSObject>);
    EXPECT_NE(zel::alloc<NSObject>(), zel::alloc<NSObject>());
}

TEST(Object, WhatCanBeAttachedToAnObjectCostsItOnePointer) {
    class Bare : public std::enable_shared_from_this<Bare> {
    public:
        virtual ~Bare() = default;
    };
    EXPECT_LE(sizeof(NSObject), sizeof(Bare) + sizeof(void*));
}

TEST(Object, AnObjectOnTheStackEndsLikeAnyOther) {
    NSObject object;
    object.setLastZelStyle(zel::ZelStyleToken(7));
    EXPECT_EQ(object.lastZelStyle(), zel::ZelStyleToken(7));
}

} // namespace
