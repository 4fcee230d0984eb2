// SPDX-License-Identifier: Apache-2.0
// Faults of portal and bus in an order drawn at random. Whatever has happened, the application ends
// as the portal says that it is. More of them by hand:
// ZEL_FAULT_ROUNDS=5000 ZEL_FAULT_SEED=7 portal_tests --gtest_filter='FaultScheduleTests.*'
#include "PortalFixture.h"

#include <cstdlib>
#include <memory>
#include <random>
#include <utility>

using namespace zeltest;

namespace {

std::uint64_t environment(const char* name, std::uint64_t otherwise) {
    const char* const value = std::getenv(name);
    return value != nullptr ? std::stoull(value) : otherwise;
}

} // namespace

class FaultScheduleTests : public PortalTests {
protected:
    enum class Manner { Truthful, Silent, Failing, Nonsense };
    enum class BusState { Serving, Frozen, Dead };

    void SetUp() override {
        PortalTests::SetUp();
        portal.reset();
    }

    std::mt19937_64 random{1};
    std::uint32_t truth = 0;
    Manner manner = Manner::Truthful;
    BusState busState = BusState::Serving;
    bool triesAgain = true;                           // so that it finds a bus that comes back
    std::unique_ptr<FakePortal> owner;                // of the portal's name; none: nobody is
    std::vector<std::unique_ptr<FakePortal>> retired; // still on the bus, and perhaps owing answers
    std::string log; // of this round's faults, for who reads a failure

    std::uint64_t draw(std::uint64_t count) { return random() % count; }

    void note(const std::string& what) { log += what + "; "; }

    std::vector<FakePortal*> everybody() {
        std::vector<FakePortal*> portals;
        if (owner) {
            portals.push_back(owner.get());
        }
        for (const auto& former : retired) {
            portals.push_back(former.get());
        }
        return portals;
    }

    // --- What happens to the portal, on a bus that serves

    void behave(Manner wanted) {
        manner = wanted;
        switch (wanted) {
        case Manner::Truthful:
            owner->setScheme(truth);
            break;
        case Manner::Silent:
            owner->keepQuestions();
            break;
        case Manner::Failing:
            owner->setAnswer(error("org.freedesktop.DBus.Error.UnknownMethod"));
            break;
        case Manner::Nonsense:
            owner->setAnswer(draw(2) == 0 ? reply("v", "s", "1") : reply("vv", "u", 1, "u", 1));
            break;
        }
    }
    void changeTruth() {
        truth = static_cast<std::uint32_t>(draw(4));
        note("truth " + std::to_string(truth));
        if (manner == Manner::Truthful) {
            owner->setScheme(truth);
        }
        owner->emitChange(truth);
    }
    void comeAnew() {
        truth = static_cast<std::uint32_t>(draw(4));
        note("portal comes with " + std::to_string(truth));
        owner = std::make_unique<FakePortal>(bus.address());
        owner->takeName();
        behave(Manner::Truthful);
    }
    void die() {
        note("portal dies");
        owner.reset();
    }
    /// Another one takes over while the former stays, with questions that it may answer later.
    void handOver() {
        note("portal hands over");
        owner->dropName();
        owner->keepQuestions();
        retired.push_back(std::move(owner));
        comeAnew();
    }
    void misbehave() {
        const auto wanted = static_cast<Manner>(1 + draw(3));
        note("manner " + std::to_string(static_cast<int>(wanted)));
        behave(wanted);
    }
    /// Answers of the past: those of the portal are followed by its word that things have changed.
    void answerLate() {
        note("late answers");
        const auto past = static_cast<std::uint32_t>(draw(4));
        for (const auto& former : retired) {
            former->answerKept(number(past));
        }
        if (owner) {
            owner->answerKept(number(past));
            owner->emitChange(truth);
        }
    }
    void botherAsAStranger() {
        note("stranger");
        FakePortal stranger(bus.address());
        stranger.emitChange(1);
        if (owner && !owner->asker().empty()) {
            stranger.emitChange(1, owner->asker().c_str());
            stranger.forgeDeparture(owner->asker().c_str());
        }
        stranger.finishSending();
    }

    // --- What happens to the bus

    void killBus() {
        note("bus dies");
        owner.reset();
        retired.clear();
        bus.stop();
        busState = BusState::Dead;
    }
    void freezeBus() {
        note("bus freezes");
        bus.freeze();
        busState = BusState::Frozen;
    }
    void healBus() {
        note("bus heals");
        if (busState == BusState::Frozen) {
            bus.thaw();
        } else if (busState == BusState::Dead) {
            ASSERT_TRUE(bus.start());
        }
        busState = BusState::Serving;
    }

    // --- What the host does

    void restartHost() {
        // Without a bus and without trying again there would be nothing to wait for.
        triesAgain = busState == BusState::Dead || draw(2) == 0;
        note(triesAgain ? "host starts, trying again" : "host starts");
        host->options.retryAfter = triesAgain ? 1ms : 0ms;
        host->start();
    }
    /// A few rounds of the loop, in which nothing, or much, may come.
    void letRun() {
        const auto portals =
            busState == BusState::Serving ? everybody() : std::vector<FakePortal*>();
        for (auto left = draw(8); left > 0; --left) {
            host->step(portals, std::chrono::milliseconds(draw(4)));
            expectConsistency();
        }
    }
    void expectConsistency() {
        const auto status = host->status();
        const auto scheme = host->appearance->colorScheme();
        if (status == ZelPortalStatus::Following || status == ZelPortalStatus::Lost) {
            EXPECT_EQ(isDark(), scheme == 1U) << log;
            EXPECT_LT(scheme.value_or(0), 4U) << log;
        } else {
            EXPECT_EQ(scheme, std::nullopt) << log;
            EXPECT_FALSE(isDark() && status != ZelPortalStatus::Connecting) << log;
        }
    }

    void disturbPortal() {
        switch (owner ? draw(8) : 7) {
        case 0:
        case 1:
            return changeTruth();
        case 2:
        case 3:
            return misbehave();
        case 4:
            return die();
        case 5:
            return handOver();
        case 6:
            note("flood");
            return owner->emitFlood(300);
        default:
            return owner ? owner->emitChangeOf("org.freedesktop.appearance", "accent-color")
                         : comeAnew();
        }
    }
    void disturb() {
        const auto what = draw(16);
        if (what == 0) {
            restartHost();
        } else if (what == 1) {
            note("refresh");
            host->refresh();
        } else if (busState != BusState::Serving) {
            if (what < 6) {
                healBus();
            }
        } else if (what == 2 && triesAgain) {
            killBus();
        } else if (what == 3) {
            freezeBus();
        } else if (what == 4) {
            botherAsAStranger();
        } else if (what == 5) {
            answerLate();
        } else {
            disturbPortal();
        }
        letRun();
    }

    /// Brings the portal back to the truth, as portals do: it comes anew, or says that it changed.
    void heal() {
        if (busState != BusState::Serving) {
            healBus();
        }
        if (!owner) {
            comeAnew();
        } else if (manner != Manner::Truthful || draw(2) == 0) {
            behave(Manner::Truthful);
            changeTruth();
        }
        if (draw(2) == 0) {
            answerLate();
        }
    }
    void expectTheTruth(std::uint64_t round) {
        const auto isTrue = [&] {
            // Not one that a predecessor told.
            return owner->questions() > 0 && host->status() == ZelPortalStatus::Following &&
                   host->appearance->colorScheme() == truth && isDark() == (truth == 1);
        };
        ASSERT_TRUE(host->run(isTrue, everybody())) << "round " << round << ": " << log << "truth "
                                                    << truth << ", " << host->appearance->reason();
        // And so it stays, once everything that was still under way has come.
        for (auto* former : everybody()) {
            former->finishSending();
        }
        for (int again = 0; again < 2; ++again) {
            owner->knock(owner->asker());
            ASSERT_TRUE(host->run([&] { return owner->wasHeard(); }, everybody()));
            ASSERT_TRUE(host->run(isTrue, everybody())) << "round " << round << ": " << log;
        }
    }
};

TEST_F(FaultScheduleTests, WhateverHappensTheApplicationEndsAsThePortalSays) {
    const auto rounds = environment("ZEL_FAULT_ROUNDS", 200);
    const auto seed = environment("ZEL_FAULT_SEED", 1);
    host->options.answerTimeout = 10ms;
    host->options.statusChanged = nullptr;
    restartHost();
    for (std::uint64_t round = 0; round < rounds && !HasFailure(); ++round) {
        random.seed(seed + round);
        log.clear();
        for (auto left = 1 + draw(20); left > 0; --left) {
            ASSERT_NO_FATAL_FAILURE(disturb());
        }
        heal();
        ASSERT_NO_FATAL_FAILURE(expectTheTruth(round));
        retired.clear();
    }
}
