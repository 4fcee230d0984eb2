// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/AfterExceptionFixture.h"

namespace zeltest {
namespace {

using namespace zel;

/// Raises, once each time it is told to, instead of answering what it is told.
class Unsure : public Styled {
public:
    enum class Question { None, Parent, Domain, Associated };
    mutable Question raisesAt = Question::None;

    std::shared_ptr<NSObject> parentZelStyleable() const override {
        return answer(Question::Parent, Styled::parentZelStyleable());
    }
    std::optional<std::string> domainIdentifierOfZelStyleable() const override {
        return answer(Question::Domain, Styled::domainIdentifierOfZelStyleable());
    }
    std::optional<std::vector<std::shared_ptr<NSObject>>> associatedZelStyleables() const override {
        return answer(Question::Associated, Styled::associatedZelStyleables());
    }

private:
    template <class Answer>
    Answer answer(Question question, Answer given) const {
        if (raisesAt == question) {
            raisesAt = Question::None;
            throw Failure();
        }
        return given;
    }
};

/// An object that raises when it is asked stands among those that don't.
class AfterAnAnswerThatRaisedTests : public AfterExceptionTests {
protected:
    AfterAnAnswerThatRaisedTests() { unsure->parent = b; }

    void registerIt() {
        domain->registerChangeHandler(recorder.handler("unsure"), unsure);
        recorder.take();
    }

    const std::shared_ptr<Unsure> unsure = alloc<Unsure>();
};

TEST_F(AfterAnAnswerThatRaisedTests, ItsParentIsAskedForAgainNextTime) {
    registerIt();
    unsure->raisesAt = Unsure::Question::Parent;
    EXPECT_THROW(domain->notifyForStyleChangeOf(a, {.force = true}), Failure);
    recorder.take();
    EXPECT_EQ(calledNext(a), (Names{"a", "b", "c", "unsure"}));
    unsure->raisesAt = Unsure::Question::Parent;
    EXPECT_THROW((void)domain->styleFor(unsure), Failure);
    EXPECT_EQ(domain->styleFor(unsure), main);
    EXPECT_EQ(calledNext(), (Names{"a", "b", "c", "unsure"}));
}

TEST_F(AfterAnAnswerThatRaisedTests, AtItsRegistrationItIsRegisteredAndNotCalled) {
    unsure->raisesAt = Unsure::Question::Parent;
    EXPECT_THROW(domain->registerChangeHandler(recorder.handler("unsure"), unsure), Failure);
    EXPECT_EQ(recorder.takeNames(), Names{});
    EXPECT_EQ(calledNext(), (Names{"a", "b", "c", "unsure"}));
}

TEST_F(AfterAnAnswerThatRaisedTests, ItsAssociatedObjectsAreServedNextTime) {
    unsure->parent = nullptr;
    unsure->associated = {{c}};
    unsure->raisesAt = Unsure::Question::Associated;
    EXPECT_THROW(domain->notifyForStyleChangeOf(unsure, {.force = true}), Failure);
    recorder.take();
    EXPECT_EQ(calledNext(unsure), (Names{"c"}));
}

TEST_F(AfterAnAnswerThatRaisedTests, AnIdentifierIsKeptThoughItsDomainIsNotTold) {
    registerIt();
    const auto accent = addStyle(domain->defaultScheme(), "accent");
    unsure->raisesAt = Unsure::Question::Domain;
    EXPECT_THROW(unsure->setCustomZelStyleIdentifier("accent"), Failure);
    EXPECT_EQ(recorder.takeNames(), Names{});
    EXPECT_EQ(unsure->customZelStyleIdentifier(), "accent");
    runElsewhere([this] { domain->notifyForStyleChangeOf(nullptr, {}); });
    EXPECT_EQ(recorder.take(), (StyleCalls{{"unsure", accent, 1}}));
}

} // namespace
} // namespace zeltest
