// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Recorder.h"
#include "tests/threads/ThreadTable.h"

#include <map>
#include <set>

namespace zeltest {
namespace {

using namespace zel;

/// What may give an object another style, done between two deliveries that remember what they find:
/// the next one must not go by what was remembered. The last test holds them against the headers.
class RememberedStyleTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyleScheme> scheme = domain->defaultScheme();
    std::shared_ptr<ZelStyle> main = addStyle(scheme, "main");
    std::shared_ptr<ZelStyle> card = addStyle(scheme, "card");
    const std::shared_ptr<ZelStyle> nobodys = addStyle(scheme, "nobody's");
    const std::shared_ptr<ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    const std::shared_ptr<NSView> window = alloc<NSView>();
    const std::shared_ptr<NSView> panel = alloc<NSView>();
    const std::shared_ptr<NSView> label = alloc<NSView>();
    Recorder recorder;

    RememberedStyleTests() {
        window->addSubview(panel);
        panel->addSubview(label);
        domain->registerChangeHandler(recorder.handler("label"), label);
        remember();
    }
    /// Has everything remembered that is remembered from one delivery to the next.
    void remember() {
        for (int round = 0; round < 3; ++round) {
            nobodys->updateStyleWithChanges(nullptr);
        }
        recorder.take();
    }
    /// The styles that those are called with to whom another one applies now.
    StyleCalls called() {
        nobodys->updateStyleWithChanges(nullptr);
        auto calls = recorder.take();
        remember();
        return calls;
    }
    static StyleCalls once(const std::shared_ptr<ZelStyle>& style) { return {{"label", style, 1}}; }
};

TEST_F(RememberedStyleTests, SetCustomZelStyleIdentifierAbove) {
    window->setCustomZelStyleIdentifier("card");
    EXPECT_EQ(recorder.take(), once(card));
    EXPECT_EQ(domain->styleFor(label), card);
    window->setCustomZelStyleIdentifier(std::nullopt);
    EXPECT_EQ(recorder.take(), once(main));
}

TEST_F(RememberedStyleTests, SetCustomZelStyleSchemeIdentifierAbove) {
    panel->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(recorder.take(), once(dark));
    panel->setCustomZelStyleSchemeIdentifier(std::nullopt);
    EXPECT_EQ(recorder.take(), once(main));
}

TEST_F(RememberedStyleTests, SetLastZelStyle) {
    label->setLastZelStyle(card);
    EXPECT_EQ(called(), once(main));
    label->setLastZelStyle(card);
    card->updateStyleWithChanges(nullptr); // of another family
    EXPECT_EQ(recorder.take(), once(main));
}

TEST_F(RememberedStyleTests, AddSubviewAndRemoveFromSuperview) {
    const auto other = alloc<NSView>();
    other->setCustomZelStyleIdentifier("card");
    other->addSubview(panel);
    EXPECT_EQ(called(), once(card));
    panel->removeFromSuperview();
    EXPECT_EQ(called(), once(main));
}

TEST_F(RememberedStyleTests, TheEndOfAView) {
    auto other = alloc<NSView>();
    other->setCustomZelStyleIdentifier("card");
    other->addSubview(panel);
    EXPECT_EQ(called(), once(card));
    other.reset();
    EXPECT_EQ(called(), once(main));
}

TEST_F(RememberedStyleTests, AddStyleAndRemoveStyle) {
    label->setCustomZelStyleIdentifier("card");
    recorder.take();
    const auto newer = alloc<ZelStyle>()->initWithIdentifier("card", scheme);
    remember();
    scheme->addStyle(newer);
    EXPECT_EQ(called(), once(newer));
    scheme->removeStyle(newer);
    EXPECT_EQ(called(), once(main));
}

TEST_F(RememberedStyleTests, SetStylesByIdentifier) {
    label->setCustomZelStyleIdentifier("card");
    remember();
    scheme->setStylesByIdentifier({{"main", main}, {"card", dark}});
    EXPECT_EQ(called(), once(dark));
}

TEST_F(RememberedStyleTests, SetCurrentScheme) {
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(recorder.take(), once(dark));
    dark->updateStyleWithChanges(nullptr);
    EXPECT_EQ(recorder.take(), once(dark)); // a member of its family now
    domain->setCurrentScheme(scheme);
    EXPECT_EQ(recorder.take(), once(main));
}

TEST_F(RememberedStyleTests, TheMainStyleStaysUntilTheNextSwitch) {
    const auto newer = addStyle(scheme, "main");
    EXPECT_EQ(called(), StyleCalls{});
    domain->setCurrentScheme(domain->darkScheme());
    recorder.take();
    domain->setCurrentScheme(scheme);
    EXPECT_EQ(recorder.take(), once(newer));
}

TEST_F(RememberedStyleTests, SetSchemeFollowsSystem) {
    makeSystemDark();
    domain->setSchemeFollowsSystem(true);
    EXPECT_EQ(recorder.take(), once(dark));
    domain->setSchemeFollowsSystem(false); // light, which has no style of its own
    EXPECT_EQ(recorder.take(), once(main));
}

TEST_F(RememberedStyleTests, SetParentStyle) {
    const auto child = addChildStyle(main, "child");
    scheme->addStyle(child);
    label->setCustomZelStyleIdentifier("child");
    recorder.take();
    for (int round = 0; round < 3; ++round) {
        main->updateStyleWithChanges(nullptr);
        EXPECT_EQ(recorder.take(), once(child)) << round;
    }
    child->setParentStyle(card);
    main->updateStyleWithChanges(nullptr);
    EXPECT_EQ(recorder.take(), StyleCalls{});
    card->updateStyleWithChanges(nullptr);
    EXPECT_EQ(recorder.take(), once(child));
}

TEST_F(RememberedStyleTests, TheEndOfAParentStyleAndANewOneAtItsAddress) {
    auto middle = addChildStyle(main, "middle");
    const auto child = addChildStyle(middle, "child");
    scheme->addStyle(child);
    label->setCustomZelStyleIdentifier("child");
    for (int round = 0; round < 3; ++round) {
        main->updateStyleWithChanges(nullptr);
    }
    scheme->removeStyle(middle);
    for (int round = 0; round < 3; ++round) {
        main->updateStyleWithChanges(nullptr);
        EXPECT_FALSE(recorder.take().empty()) << round;
    }
    middle.reset();
    main->updateStyleWithChanges(nullptr);
    EXPECT_EQ(recorder.take(), StyleCalls{});
    for (int i = 0; i < 20; ++i) { // often at the ended one's address
        const auto stranger = addChildStyle(main, "stranger");
        main->updateStyleWithChanges(nullptr);
        EXPECT_EQ(recorder.take(), StyleCalls{}) << i;
        stranger->updateStyleWithChanges(nullptr);
        EXPECT_EQ(recorder.take(), StyleCalls{}) << i;
        scheme->removeStyle(stranger);
    }
}

TEST_F(RememberedStyleTests, TheEndOfAStyleAndANewOneAtItsAddress) {
    label->setCustomZelStyleIdentifier("card");
    recorder.take();
    for (int i = 0; i < 20; ++i) {
        scheme->removeStyle(card);
        card.reset();
        EXPECT_EQ(called(), once(main)) << i;
        card = addStyle(scheme, "card");
        EXPECT_EQ(called(), once(card)) << i;
    }
}

TEST_F(RememberedStyleTests, ALookUpThatMakesTheScheme) {
    label->setCustomZelStyleSchemeIdentifier("sepia"); // made by the look-up, and empty
    EXPECT_EQ(recorder.take(), StyleCalls{});
    const auto sepia = addStyle(domain->schemeForIdentifier("sepia"), "main");
    EXPECT_EQ(called(), once(sepia));
}

TEST_F(RememberedStyleTests, AnObjectThatIsAskedForItsParent) {
    const auto first = makeStyled();
    const auto second = makeStyled();
    first->setCustomZelStyleIdentifier("card");
    const auto asked = makeStyled(first);
    domain->registerChangeHandler(recorder.handler("asked"), asked);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"asked", card, 0}}));
    asked->parent = second; // nobody is notified, and nothing was remembered
    EXPECT_EQ(called(), (StyleCalls{{"asked", main, 1}}));
    asked->parent = panel;
    panel->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"label", dark, 1}, {"asked", dark, 1}}));
}

TEST_F(RememberedStyleTests, AReset) {
    ZelStyleDomain::domainForIdentifier("_reset");
    EXPECT_EQ(ZelStyle::forStyleable(label), nullptr);
    const auto fresh = addStyle(ZelStyleDomain::defaultDomain()->defaultScheme(), "main");
    EXPECT_EQ(ZelStyle::forStyleable(label), fresh);
    EXPECT_EQ(domain->styleFor(label), main); // of the domain that was removed
}

TEST_F(RememberedStyleTests, AddAndRemoveChildViewControllers) {
    const auto outer = alloc<NSViewController>();
    const auto other = alloc<NSViewController>();
    const auto inner = alloc<NSViewController>();
    other->setCustomZelStyleIdentifier("card");
    outer->addChildViewController(inner);
    domain->registerChangeHandler(recorder.handler("inner"), inner);
    recorder.take();
    inner->removeFromParentViewController();
    other->addChildViewController(inner);
    EXPECT_EQ(called(), (StyleCalls{{"inner", card, 1}}));
    inner->removeFromParentViewController();
    EXPECT_EQ(called(), (StyleCalls{{"inner", main, 1}}));
}

TEST_F(RememberedStyleTests, ANodeOfAHostsOwnClass) {
    const auto top = alloc<Linked>();
    auto middle = alloc<Linked>();
    const auto bottom = alloc<Linked>();
    top->setCustomZelStyleIdentifier("card");
    bottom->node.setParent(&middle->node);
    domain->registerChangeHandler(recorder.handler("bottom"), bottom);
    recorder.take();
    middle->node.setParent(&top->node);
    EXPECT_EQ(called(), (StyleCalls{{"bottom", card, 1}}));
    middle->node.leave();
    EXPECT_EQ(domain->styleFor(middle), main);
    EXPECT_EQ(called(), (StyleCalls{{"bottom", main, 1}}));
    middle->node.setParent(&top->node);
    bottom->node.setParent(&middle->node);
    EXPECT_EQ(called(), (StyleCalls{{"bottom", card, 1}}));
    middle.reset();
    EXPECT_EQ(called(), (StyleCalls{{"bottom", main, 1}}));
}

TEST_F(RememberedStyleTests, InheritedStyleWithChanges) {
    label->setCustomZelStyleIdentifier("badge");
    recorder.take();
    const auto badge = main->inheritedStyleWithChanges(nullptr, "badge", scheme);
    EXPECT_EQ(called(), once(badge));
}

/// What changes a remembered style, with the test above that does it.
const std::map<std::string, std::string>& mutators() {
    static const std::map<std::string, std::string> all{
        {"NSObject::setCustomZelStyleIdentifier", "SetCustomZelStyleIdentifierAbove"},
        {"NSObject::setCustomZelStyleSchemeIdentifier", "SetCustomZelStyleSchemeIdentifierAbove"},
        {"NSObject::setLastZelStyle", "SetLastZelStyle"},
        {"NSView::NSView", "TheEndOfAView"},
        {"NSView::addSubview", "AddSubviewAndRemoveFromSuperview"},
        {"NSView::removeFromSuperview", "AddSubviewAndRemoveFromSuperview"},
        {"NSViewController::NSViewController", "AddAndRemoveChildViewControllers"},
        {"NSViewController::addChildViewController", "AddAndRemoveChildViewControllers"},
        {"NSViewController::removeFromParentViewController", "AddAndRemoveChildViewControllers"},
        {"ZelStyle::ZelStyle", "TheEndOfAStyleAndANewOneAtItsAddress"},
        {"ZelStyle::inheritedStyleWithChanges", "InheritedStyleWithChanges"},
        {"ZelStyle::setParentStyle", "SetParentStyle"},
        {"ZelStyleDomain::ZelStyleDomain", "AReset"},
        {"ZelStyleDomain::domainForIdentifier", "AReset"},
        {"ZelStyleDomain::mainStyle", "TheMainStyleStaysUntilTheNextSwitch"},
        {"ZelStyleDomain::schemeForIdentifier", "ALookUpThatMakesTheScheme"},
        {"ZelStyleDomain::setCurrentScheme", "SetCurrentScheme"},
        {"ZelStyleDomain::setSchemeFollowsSystem", "SetSchemeFollowsSystem"},
        {"ZelStyleDomain::setupStyles", "AddStyleAndRemoveStyle"},
        {"ZelStyleScheme::addStyle", "AddStyleAndRemoveStyle"},
        {"ZelStyleScheme::removeStyle", "AddStyleAndRemoveStyle"},
        {"ZelStyleScheme::setStylesByIdentifier", "SetStylesByIdentifier"},
        {"ZelStyleable::parentZelStyleable", "AnObjectThatIsAskedForItsParent"},
        {"ZelStyleableNode::ZelStyleableNode", "ANodeOfAHostsOwnClass"},
        {"ZelStyleableNode::leave", "ANodeOfAHostsOwnClass"},
        {"ZelStyleableNode::setParent", "ANodeOfAHostsOwnClass"}};
    return all;
}

/// All else in these headers, by class: no object gets another style by it.
std::set<std::string> others() {
    const std::map<std::string, std::vector<std::string>> byClass{
        {"NSObject",
         {"NSObject", "addObserver", "asZelStyleable", "customZelStyleIdentifier",
          "customZelStyleSchemeIdentifier", "didChangeValueForKey", "init", "lastZelStyle",
          "observeValueForKeyPath", "registerStyleableChangeHandler", "removeObserver",
          "styleChangedWithEvent", "unregisterStyleableChangeHandlers", "willChangeValueForKey"}},
        {"NSView",
         {"asZelStyleable", "domainIdentifierOfZelStyleable", "parentZelStyleable", "subviews",
          "superview", "zelStyleableNode"}},
        {"NSViewController",
         {"asZelStyleable", "associatedZelStyleables", "childViewControllers",
          "domainIdentifierOfZelStyleable", "isViewLoaded", "loadView", "parentViewController",
          "parentZelStyleable", "setView", "view", "zelStyleableNode"}},
        {"ZelStyle",
         {"addDefaultValueProvider",
          "addStyleUpdateObserver",
          "defaultValueProviders",
          "domain",
          "effectiveValueForAttribute",
          "effectiveValues",
          "forStyleable",
          "identifier",
          "initWithIdentifier",
          "isChildOf",
          "load",
          "loadBase",
          "loadMain",
          "parentStyle",
          "removeDefaultValueProvider",
          "removeStyleUpdateObserverWithOwner",
          "scheme",
          "seed",
          "setDomain",
          "setIdentifier",
          "setScheme",
          "setValue",
          "token",
          "updateStyleWithChanges",
          "valueForAttribute"}},
        {"ZelStyleDomain",
         {"currentScheme", "darkScheme", "defaultDomain", "defaultScheme", "domainForStyleable",
          "domainIdentifier", "init", "initWithDomainIdentifier", "isEqualOrChildOf", "lightScheme",
          "notifyForStyleChangeOf", "registerChangeHandler", "schemeFollowsSystem", "setStyleClass",
          "styleClass", "styleFor", "styleForIdentifier", "unregisterChangeHandler",
          "unregisterChangeHandlersWithOwner"}},
        {"ZelStyleScheme",
         {"ZelStyleScheme", "domain", "identifier", "initWithIdentifier", "styleForIdentifier",
          "stylesByIdentifier"}},
        {"ZelStyleable",
         {"ZelStyleable", "associatedZelStyleables", "domainIdentifierOfZelStyleable",
          "zelStyleableNode"}},
        {"ZelStyleableNode", {"object"}}};
    std::set<std::string> all{"alloc"};
    for (const auto& [of, operations] : byClass) {
        for (const std::string& each : operations) {
            all.insert(of + "::" + each);
        }
    }
    return all;
}

TEST_F(RememberedStyleTests, EveryOperationOfTheHeadersIsTriedOrChangesNothing) {
    std::set<std::string> declared;
    for (const char* header :
         {"NSObject", "NSView", "NSViewController", "ZelStyle", "ZelStyleDomain", "ZelStyleScheme",
          "ZelStyleable", "ZelStyleableNode"}) {
        declared.merge(readPublicOperations(ZEL_SOURCE_DIR "/include/ZelStyleKit/" +
                                            std::string(header) + ".h"));
    }
    std::set<std::string> known = others();
    std::set<std::string> tests;
    const auto& suite = *testing::UnitTest::GetInstance()->current_test_suite();
    for (int i = 0; i < suite.total_test_count(); ++i) {
        tests.insert(suite.GetTestInfo(i)->name());
    }
    for (const auto& [operation, test] : mutators()) {
        EXPECT_TRUE(known.insert(operation).second) << operation << " stands in both lists";
        EXPECT_TRUE(tests.contains(test)) << test;
    }
    EXPECT_EQ(known, declared);
}

} // namespace
} // namespace zeltest
