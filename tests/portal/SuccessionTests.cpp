// SPDX-License-Identifier: Apache-2.0
#include "PortalFixture.h"

using namespace zeltest;

/// Questions that their portal never answers, or too late, while things go on.
class SuccessionTests : public PortalTests {
protected:
    /// Has the portal keep one more question.
    void leaveAQuestionOpen() {
        const int before = portal->questions();
        portal->keepQuestions();
        host->refresh();
        ASSERT_TRUE(host->run([&] { return portal->questions() == before + 1; }, {&*portal}));
    }
};

TEST_F(SuccessionTests, AChangeIsAskedForThoughAnEarlierQuestionWasNeverAnswered) {
    host->options.answerTimeout = 50ms;
    portal->keepQuestions();
    host->start();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::NoAnswer, {&*portal}));
    portal->setScheme(1);
    portal->emitChange(1);
    EXPECT_TRUE(host->runUntilDark(true, {&*portal}));
    EXPECT_EQ(host->status(), ZelPortalStatus::Following);
}

TEST_F(SuccessionTests, AChangeIsAskedForAtLastThoughTheQuestionBeforeItIsNeverAnswered) {
    host->options.answerTimeout = 500ms;
    portal->keepQuestions();
    host->start();
    ASSERT_TRUE(host->run([&] { return portal->questions() == 1; }, {&*portal}));
    portal->setScheme(1);
    portal->emitChange(1); // while the answer would be in time
    EXPECT_TRUE(host->runUntilDark(true, {&*portal}));
    EXPECT_EQ(host->status(), ZelPortalStatus::Following);
}

TEST_F(SuccessionTests, ASuccessorIsAskedThoughItsPredecessorStaysAndOwesAnAnswer) {
    follow();
    leaveAQuestionOpen();
    portal->dropName();
    FakePortal successor(bus.address());
    successor.setScheme(1);
    successor.takeName();
    EXPECT_TRUE(host->runUntilDark(true, {&*portal, &successor}));
    EXPECT_EQ(successor.questions(), 1);
    portal->answerKept(number(0)); // too late, and nobody's business any more
    settle(*portal);
    EXPECT_TRUE(isDark());
    EXPECT_EQ(successor.questions(), 1);
}

TEST_F(SuccessionTests, WhatAPortalAnswersAfterGivingUpItsNameDoesNotCount) {
    follow();
    leaveAQuestionOpen();
    portal->dropName();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Lost, {&*portal}));
    portal->answerKept(number(1));
    settle(*portal);
    EXPECT_EQ(host->status(), ZelPortalStatus::Lost);
    EXPECT_FALSE(isDark());
    FakePortal successor(bus.address());
    successor.setScheme(1);
    successor.takeName();
    EXPECT_TRUE(host->runUntilDark(true, {&*portal, &successor}));
}

TEST_F(SuccessionTests, ARefreshIsMadeUpForThoughWhoWasAskedGivesUpItsNameAndStaysSilent) {
    host->options.answerTimeout = 200ms;
    follow();
    leaveAQuestionOpen();
    portal->dropName();
    ASSERT_TRUE(host->run(
        [&] {
            return host->status() == ZelPortalStatus::Lost ||
                   host->status() == ZelPortalStatus::NoPortal;
        },
        {&*portal}));
    host->refresh(); // while the answer would be in time
    const auto busWasAsked = [&] {
        return host->appearance->reason().find("ServiceUnknown") != std::string::npos;
    };
    EXPECT_TRUE(host->run(busWasAsked, {&*portal}));
}
