// SPDX-License-Identifier: Apache-2.0
#include "tests/support/AtEnd.h"
#include "tests/support/Recorder.h"

#include <any>

namespace zeltest {
namespace {

using namespace zel;

/// Updates again and again, so that what is remembered of one delivery serves the next.
class FamilyDeliveryTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyleScheme> scheme = domain->defaultScheme();
    const std::shared_ptr<ZelStyle> main = addStyle(scheme, "main");
    const std::shared_ptr<ZelStyle> top = addChildStyle(main, "top");
    const std::shared_ptr<ZelStyle> middle = addChildStyle(top, "middle");
    const std::shared_ptr<ZelStyle> bottom = addChildStyle(middle, "bottom");
    std::shared_ptr<ZelStyle> aside = addChildStyle(main, "aside");
    Recorder recorder;

    std::shared_ptr<NSView> listen(const std::string& name, std::string_view identifier,
                                   std::function<void()> then = nullptr) {
        auto view = alloc<NSView>();
        view->setCustomZelStyleIdentifier(identifier);
        view->registerStyleableChangeHandler(recorder.handler(name, std::move(then)));
        recorder.calls.clear();
        return view;
    }
    Names update(const std::shared_ptr<ZelStyle>& style) {
        style->updateStyleWithChanges(nullptr);
        return recorder.takeNames();
    }
};

TEST_F(FamilyDeliveryTests, EachUpdateReachesTheFamilyInOrderOfRegistration) {
    const auto low = listen("low", "bottom");
    const auto other = listen("other", "aside");
    const auto high = listen("high", "top");
    const auto between = makeStyled(); // has to be asked for its parent
    between->setCustomZelStyleIdentifier("middle");
    between->registerStyleableChangeHandler(recorder.handler("between"));
    recorder.take();
    for (int round = 0; round < 4; ++round) {
        EXPECT_EQ(update(top), (Names{"low", "high", "between"})) << round;
        EXPECT_EQ(update(middle), (Names{"low", "between"})) << round;
        EXPECT_EQ(update(bottom), Names{"low"}) << round;
        EXPECT_EQ(update(aside), Names{"other"}) << round;
        EXPECT_EQ(update(main), (Names{"low", "other", "high", "between"})) << round;
    }
}

TEST_F(FamilyDeliveryTests, AStyleWithoutListenersReachesNobody) {
    const auto view = listen("view", "aside");
    for (int round = 0; round < 4; ++round) {
        EXPECT_EQ(update(bottom), Names{}) << round;
    }
}

TEST_F(FamilyDeliveryTests, AnIdentifierSetBetweenUpdatesMovesItsListener) {
    const auto view = listen("view", "aside");
    for (int round = 0; round < 4; ++round) {
        view->setCustomZelStyleIdentifier(round % 2 == 0 ? "bottom" : "aside");
        recorder.calls.clear();
        EXPECT_EQ(update(middle), round % 2 == 0 ? Names{"view"} : Names{}) << round;
        EXPECT_EQ(update(middle), round % 2 == 0 ? Names{"view"} : Names{}) << round;
        EXPECT_EQ(update(middle), round % 2 == 0 ? Names{"view"} : Names{}) << round;
    }
}

TEST_F(FamilyDeliveryTests, AListenerMadeDueByAHandlerIsCalledInTheSameDelivery) {
    std::shared_ptr<NSView> before;
    std::shared_ptr<NSView> after;
    bool forgets = false;
    before = listen("before", "aside");
    const auto view = listen("view", "top", [&] {
        if (forgets) {
            before->setLastZelStyle(nullptr);
            after->setLastZelStyle(nullptr);
        }
    });
    after = listen("after", "aside");
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(update(top), Names{"view"});
    }
    forgets = true;
    EXPECT_EQ(update(top), (Names{"view", "after"}));
    forgets = false;
    EXPECT_EQ(update(bottom), Names{"before"});
    EXPECT_EQ(update(top), Names{"view"});
}

TEST_F(FamilyDeliveryTests, ASwitchWithinADeliveryLeavesTheOutdatedStyleAndTheNextUpdateMendsIt) {
    const auto dark = domain->darkScheme();
    addStyle(dark, "main");
    bool switches = false;
    const auto view = alloc<NSView>();
    view->registerStyleableChangeHandler(recorder.handler("view", [&] {
        if (std::exchange(switches, false)) {
            domain->setCurrentScheme(dark);
            for (int round = 0; round < 3; ++round) {
                aside->updateStyleWithChanges(nullptr);
            }
        }
    }));
    for (int round = 0; round < 3; ++round) {
        (void)update(main);
    }
    switches = true;
    EXPECT_EQ(update(main), (Names{"view", "view"})); // the second by the switch
    EXPECT_EQ(update(aside), Names{"view"});          // whose style the first call then covered
    EXPECT_EQ(update(aside), Names{});
}

TEST_F(FamilyDeliveryTests, AStyleAddedByAHandlerMakesNoOtherFamilyDue) {
    bool adds = false;
    const auto first = listen("first", "bottom", [&] {
        if (std::exchange(adds, false)) {
            scheme->addStyle(addChildStyle(main, "later"));
        }
    });
    const auto other = listen("other", "aside");
    const auto last = listen("last", "middle");
    for (int round = 0; round < 4; ++round) {
        adds = true;
        EXPECT_EQ(update(top), (Names{"first", "last"})) << round;
        EXPECT_EQ(update(top), (Names{"first", "last"})) << round;
    }
}

TEST_F(FamilyDeliveryTests, AStyleRemovedByAHandlerIsNoLongerFoundInTheSameDelivery) {
    bool removes = false;
    const auto first = listen("first", "middle", [&] {
        if (std::exchange(removes, false)) {
            scheme->removeStyle(middle);
        }
    });
    const auto second = listen("second", "middle");
    EXPECT_EQ(second->lastZelStyle(), middle->token());
    removes = true;
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(recorder.takeNames(), (Names{"first", "second"}));
    EXPECT_EQ(first->lastZelStyle(), middle->token()); // what it was called with
    EXPECT_EQ(second->lastZelStyle(), main->token());
}

TEST_F(FamilyDeliveryTests, ListenersThatComeAndGoBetweenUpdatesCount) {
    const auto view = listen("view", "top");
    for (int round = 0; round < 3; ++round) {
        (void)update(top);
    }
    auto second = listen("second", "bottom");
    EXPECT_EQ(update(top), (Names{"view", "second"}));
    EXPECT_EQ(update(top), (Names{"view", "second"}));
    EXPECT_EQ(update(top), (Names{"view", "second"}));
    second.reset();
    EXPECT_EQ(update(top), Names{"view"});
    const auto third = listen("third", "middle");
    EXPECT_EQ(update(top), (Names{"view", "third"}));
    view->unregisterStyleableChangeHandlers();
    EXPECT_EQ(update(top), Names{"third"});
}

TEST_F(FamilyDeliveryTests, AnUpdateInARegistrationsFirstCallReachesTheNewListener) {
    const auto view = listen("view", "aside");
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(update(bottom), Names{}) << round;
    }
    const auto added = alloc<NSView>();
    bool isFirst = true;
    added->registerStyleableChangeHandler(recorder.handler("added", [&] {
        if (std::exchange(isFirst, false)) {
            bottom->updateStyleWithChanges(nullptr); // "added" has no last style yet
        }
    }));
    EXPECT_EQ(recorder.take(), (StyleCalls{{"added", main, 0}, {"added", main, 1}}));
}

TEST_F(FamilyDeliveryTests, AListenerWhoseFirstCallRaisedIsCalledByTheNextUpdateOfAnyStyle) {
    const auto view = listen("view", "aside");
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(update(bottom), Names{}) << round;
    }
    const auto added = alloc<NSView>();
    bool raises = true;
    EXPECT_THROW(added->registerStyleableChangeHandler(recorder.handler("added",
                                                                        [&] {
                                                                            if (raises) {
                                                                                throw 1;
                                                                            }
                                                                        })),
                 int);
    raises = false;
    recorder.take();
    EXPECT_EQ(update(bottom), Names{"added"});
}

TEST_F(FamilyDeliveryTests, AnUpdateThatAHandlerBreaksOffLeavesNobodyOutOfTheNext) {
    bool raises = false;
    const auto first = listen("first", "bottom", [&] {
        if (raises) {
            throw std::runtime_error("handler");
        }
    });
    const auto second = listen("second", "bottom");
    for (int round = 0; round < 4; ++round) {
        EXPECT_EQ(update(main), (Names{"first", "second"})) << round;
        raises = true;
        EXPECT_THROW(main->updateStyleWithChanges(nullptr), std::runtime_error);
        raises = false;
        recorder.calls.clear();
    }
}

/// Two listeners to one style, the first of which lets go of it; nobody else holds it.
class EndingStyleTests : public FamilyDeliveryTests {
protected:
    bool removes = false;
    Names called;
    const std::shared_ptr<NSView> first = listenWithout("first");
    const std::shared_ptr<NSView> second = listenWithout("second");

    std::shared_ptr<NSView> listenWithout(const std::string& name) {
        auto view = alloc<NSView>();
        view->setCustomZelStyleIdentifier("aside");
        view->registerStyleableChangeHandler([this, name](const auto&, const auto&, auto) {
            called.push_back(name);
            if (std::exchange(removes, false)) {
                scheme->removeStyle(aside);
                aside.reset();
            }
        });
        return view;
    }
    void deliverAndEnd(std::function<void()> atEnd) {
        aside->setValue(ZelAttributeValue(std::make_shared<const std::any>(
                            std::make_shared<AtEnd>(std::move(atEnd)))),
                        "at end");
        called.clear();
        removes = true;
        domain->notifyForStyleChangeOf(nullptr, {.force = true});
    }
};

TEST_F(EndingStyleTests, ItMayUnregisterTheNextListener) {
    deliverAndEnd([&] { second->unregisterStyleableChangeHandlers(); });
    called.clear();
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(called, Names{"first"});
}

TEST_F(EndingStyleTests, NobodyIsLeftWithAnOutdatedStyle) {
    const auto dark = addStyle(domain->darkScheme(), "main");
    bool ended = false;
    deliverAndEnd([&] {
        ended = true;
        domain->setCurrentScheme(domain->darkScheme());
        for (int round = 0; round < 3; ++round) {
            bottom->updateStyleWithChanges(nullptr);
        }
    });
    EXPECT_TRUE(ended);
    EXPECT_EQ(second->lastZelStyle(), dark->token());
    bottom->updateStyleWithChanges(nullptr);
    EXPECT_EQ(first->lastZelStyle(), dark->token());
}

TEST_F(FamilyDeliveryTests, AnObjectThatListensInTwoDomainsIsCalledByEach) {
    const auto view = listen("view", "aside");
    const auto other = ZelStyleDomain::domainForIdentifier("other");
    const auto elsewhere = addStyle(other->defaultScheme(), "main");
    other->registerChangeHandler(recorder.handler("elsewhere"), view);
    recorder.take();
    for (int round = 0; round < 4; ++round) { // each time the other domain's style was the last
        EXPECT_EQ(update(bottom), Names{"view"}) << round;
        elsewhere->updateStyleWithChanges(nullptr);
        EXPECT_EQ(recorder.takeNames(), Names{"elsewhere"}) << round;
    }
}

TEST_F(FamilyDeliveryTests, AnIdentifierThatAnotherDomainsTargetGetsMovesTheListenersBelowIt) {
    const auto editor = ZelStyleDomain::domainForIdentifier("editor");
    const auto editorMain = addStyle(editor->defaultScheme(), "main");
    const auto editorTop = addChildStyle(editorMain, "top");
    const auto editorAside = addChildStyle(editorMain, "aside");
    editor->setCurrentScheme(editor->defaultScheme());
    const auto root = alloc<NSView>(); // its domain is the default one
    const auto view = alloc<NSView>();
    root->addSubview(view);
    root->setCustomZelStyleIdentifier("top");
    editor->registerChangeHandler(recorder.handler("view"), view);
    recorder.take();
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(update(editorTop), Names{"view"});
    }
    root->setCustomZelStyleIdentifier("aside"); // the editor isn't told
    EXPECT_EQ(update(editorAside), Names{"view"});
    EXPECT_EQ(update(editorTop), Names{});
}

} // namespace
} // namespace zeltest
