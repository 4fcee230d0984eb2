// SPDX-License-Identifier: Apache-2.0
#include "PortalFixture.h"

using namespace zeltest;

/// Questions that their portal never answers, or too late, while things go on.
class SuccessionTests : public PortalTests {};

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
