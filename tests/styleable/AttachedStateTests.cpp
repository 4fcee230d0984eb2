// SPDX-License-Identifier: Apache-2.0
#include "tests/styleable/StyleableFixture.h"
#include "tests/support/Watchdog.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <optional>
#include <string>

namespace {

using namespace zeltest;

class AttachedState : public StyleableTests {};

TEST_F(AttachedState, EverythingReadsAsNoneUntilItIsSet) {
    for (const std::shared_ptr<zel::NSObject>& each :
         {std::shared_ptr<zel::NSObject>(makePlain()), std::shared_ptr<zel::NSObject>(makeStyled()),
          std::shared_ptr<zel::NSObject>(zel::alloc<zel::NSView>())}) {
        EXPECT_EQ(each->customZelStyleIdentifier(), std::nullopt);
        EXPECT_EQ(each->customZelStyleSchemeIdentifier(), std::nullopt);
        EXPECT_TRUE(each->lastZelStyle().isNil());
    }
}

TEST_F(AttachedState, TheIdentifiersAreKeptApartFromEachOther) {
    object->setCustomZelStyleIdentifier("accent");
    EXPECT_EQ(object->customZelStyleIdentifier(), "accent");
    EXPECT_EQ(object->customZelStyleSchemeIdentifier(), std::nullopt);
    object->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(object->customZelStyleIdentifier(), "accent");
    EXPECT_EQ(object->customZelStyleSchemeIdentifier(), "dark");
    object->setCustomZelStyleIdentifier(std::nullopt);
    EXPECT_EQ(object->customZelStyleIdentifier(), std::nullopt);
    EXPECT_EQ(object->customZelStyleSchemeIdentifier(), "dark");
}

TEST_F(AttachedState, TheEmptyStringIsAnIdentifierAndNotNone) {
    const auto unnamed = addStyle(domain->defaultScheme(), "");
    object->setCustomZelStyleIdentifier("");
    EXPECT_EQ(object->customZelStyleIdentifier(), "");
    EXPECT_EQ(domain->styleFor(object), unnamed);
    object->setCustomZelStyleIdentifier(std::nullopt);
    EXPECT_EQ(object->customZelStyleIdentifier(), std::nullopt);
    EXPECT_EQ(domain->styleFor(object), main);
}

TEST_F(AttachedState, SettingNoneWhereNothingIsSetLeavesNone) {
    object->setCustomZelStyleIdentifier(std::nullopt);
    object->setCustomZelStyleSchemeIdentifier(std::nullopt);
    object->setLastZelStyle(nullptr);
    EXPECT_EQ(object->customZelStyleIdentifier(), std::nullopt);
    EXPECT_EQ(object->customZelStyleSchemeIdentifier(), std::nullopt);
    EXPECT_TRUE(object->lastZelStyle().isNil());
}

TEST_F(AttachedState, AnObjectThatIsNotStyleableCarriesAllThreeAndNobodyIsTold) {
    const auto plain = makePlain();
    domain->registerChangeHandler(recorder.handler("plain"), plain);
    recorder.take();
    plain->setLastZelStyle(nullptr); // so that any notification would reach it
    plain->setCustomZelStyleIdentifier("accent");
    plain->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(plain->customZelStyleIdentifier(), "accent");
    EXPECT_EQ(plain->customZelStyleSchemeIdentifier(), "dark");
    EXPECT_TRUE(recorder.take().empty());
    plain->setLastZelStyle(accent);
    EXPECT_EQ(plain->lastZelStyle(), accent->token());
}

TEST_F(AttachedState, AnObjectThatEndsMaySetBothAndNobodyIsTold) {
    struct Ending : Styled {
        ~Ending() override {
            setCustomZelStyleIdentifier("accent");
            setCustomZelStyleSchemeIdentifier("dark");
        }
    };
    domain->registerChangeHandler(recorder.handler("other"), object);
    recorder.take();
    object->setLastZelStyle(nullptr); // so that any notification would reach it
    zel::alloc<Ending>().reset();
    EXPECT_TRUE(recorder.take().empty());
}

TEST_F(AttachedState, TheLastStyleIsOnlyStored) {
    domain->registerChangeHandler(recorder.handler("owner"), object);
    recorder.take();
    object->setLastZelStyle(accent);
    EXPECT_EQ(object->lastZelStyle(), accent->token());
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_EQ(object->notifications, 0);
    object->setLastZelStyle(nullptr);
    EXPECT_TRUE(object->lastZelStyle().isNil());
}

TEST_F(AttachedState, ALastStyleThatHasEndedIsNotNilAndNoLaterStyleIsIt) {
    auto style = zel::alloc<zel::ZelStyle>()->initWithIdentifier("x", nullptr);
    const std::weak_ptr<zel::ZelStyle> weak = style;
    object->setLastZelStyle(style);
    style.reset();
    EXPECT_TRUE(weak.expired()) << "it is not kept alive";
    EXPECT_FALSE(object->lastZelStyle().isNil());
    for (int i = 0; i < 100; ++i) { // some of them at the old address
        const auto later = zel::alloc<zel::ZelStyle>()->initWithIdentifier("x", nullptr, main);
        ASSERT_NE(object->lastZelStyle(), later->token());
    }
}

TEST_F(AttachedState, AnOwnerWhoseLastStyleHasEndedIsToldThatThereIsNone) {
    const auto empty = zel::ZelStyleDomain::domainForIdentifier("empty");
    object->domainIdentifier = "empty";
    object->registerStyleableChangeHandler(recorder.handler("owner"));
    recorder.take();
    object->setLastZelStyle(zel::alloc<zel::ZelStyle>()->initWithIdentifier("x", nullptr));
    object->setCustomZelStyleIdentifier("y");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", nullptr, 1}}));
    EXPECT_TRUE(object->lastZelStyle().isNil());
}

TEST_F(AttachedState, AReaderSeesTheOldIdentifierOrTheNewOneAndNothingElse) {
    const auto plain = makePlain();
    const std::string first(50, 'a');
    const std::string second(90, 'b');
    plain->setCustomZelStyleIdentifier(first);
    plain->setCustomZelStyleSchemeIdentifier(first);
    std::atomic<bool> done = false;
    std::atomic<int> torn = 0;
    runAtOnce({[&] {
                   for (int i = 0; i < 5000; ++i) {
                       plain->setCustomZelStyleIdentifier(i % 2 ? first : second);
                       plain->setCustomZelStyleSchemeIdentifier(i % 2 ? first : second);
                   }
                   done = true;
               },
               [&] {
                   while (!done) {
                       const auto style = plain->customZelStyleIdentifier();
                       const auto scheme = plain->customZelStyleSchemeIdentifier();
                       torn += style != first && style != second;
                       torn += scheme != first && scheme != second;
                   }
               }});
    EXPECT_EQ(torn, 0);
}

TEST_F(AttachedState, ThreadsThatAttachFirstAtTheSameTimeLoseNothing) {
    for (int round = 0; round < 100; ++round) {
        const auto plain = makePlain();
        runAtOnce({[&] { plain->setCustomZelStyleIdentifier("accent"); },
                   [&] { plain->setCustomZelStyleSchemeIdentifier("dark"); },
                   [&] { plain->setLastZelStyle(main); }});
        ASSERT_EQ(plain->customZelStyleIdentifier(), "accent");
        ASSERT_EQ(plain->customZelStyleSchemeIdentifier(), "dark");
        ASSERT_EQ(plain->lastZelStyle(), main->token());
    }
}

} // namespace
