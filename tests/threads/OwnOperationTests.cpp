// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

/// Adds to a class what an object of it does of its own while it ends.
template <class Base>
class EndingAs : public Base {
public:
    std::function<void(EndingAs&)> last;

    EndingAs() = default;
    EndingAs(const EndingAs&) = delete;
    EndingAs& operator=(const EndingAs&) = delete;
    ~EndingAs() override { last(*this); }
};

/// Of its own operations, an object that ends may do those that need no reference to it.
class OwnOperationTests : public StylingTests {
protected:
    /// What any styleable object may.
    template <class Object>
    void doAllOf(Object& object) {
        EXPECT_EQ(object.customZelStyleIdentifier(), "card");
        object.setCustomZelStyleIdentifier("page");
        EXPECT_EQ(object.customZelStyleIdentifier(), "page");
        object.setCustomZelStyleSchemeIdentifier("dark");
        EXPECT_EQ(object.customZelStyleSchemeIdentifier(), "dark");
        EXPECT_EQ(object.lastZelStyle(), card->token());
        object.setLastZelStyle({});
        EXPECT_TRUE(object.lastZelStyle().isNil());
        EXPECT_TRUE(object.unregisterStyleableChangeHandlers());
        object.removeObserver(*observer, "key", this);
        NSNotificationCenter::defaultCenter().removeObserver(object, "name", nullptr);
        NSNotificationCenter::defaultCenter().postNotificationName("name", nullptr);
        object.willChangeValueForKey("key");
        object.didChangeValueForKey("key");
        domain->notifyForStyleChangeOf(nullptr, {.force = true});
        ++ended;
    }
    template <class Object>
    std::shared_ptr<EndingAs<Object>> make() {
        auto made = alloc<EndingAs<Object>>();
        made->init();
        made->last = [this](EndingAs<Object>& object) { doAllOf(object); };
        made->setCustomZelStyleIdentifier("card");
        made->addObserver(observer, "key", NSKeyValueObservingOptions::Prior, this);
        NSNotificationCenter::defaultCenter().addObserver(
            made, [](const NSNotification&) { ADD_FAILURE() << "an ending object is notified"; },
            "name", nullptr);
        domain->registerChangeHandler(recorder.handler("ending"), made);
        recorder.take();
        return made;
    }
    /// Ends one object that nobody is calling, one in a handler, and one in its own handler.
    template <class Object>
    void endEach() {
        make<Object>();
        EXPECT_EQ(recorder.take(), StyleCalls());

        const auto owner = makePlain();
        auto passing = make<Object>();
        const auto endPassing = [&](const auto&, const auto&, ZelStyleChangeEvent event) {
            if (event == ZelStyleChangeEventChanged) {
                passing.reset();
            }
        };
        domain->registerChangeHandler(endPassing, owner);
        domain->notifyForStyleChangeOf(nullptr, {.force = true});
        EXPECT_EQ(passing, nullptr);
        domain->unregisterChangeHandlersWithOwner(owner);

        passing = make<Object>();
        domain->registerChangeHandler(endPassing, passing);
        domain->notifyForStyleChangeOf(nullptr, {.force = true});
        EXPECT_EQ(passing, nullptr);
        EXPECT_EQ(ended, 3);
    }

    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> main = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<ZelStyle> card = addStyle(domain->defaultScheme(), "card");
    const std::shared_ptr<Plain> observer = makePlain(); // of values: raises where it is told
    Recorder recorder;
    int ended = 0;
};

TEST_F(OwnOperationTests, AnEndingStyleableReadsSetsIdentifiersUnregistersAndRemoves) {
    endEach<Styled>();
}

TEST_F(OwnOperationTests, AnEndingViewReadsSetsIdentifiersUnregistersAndRemoves) {
    endEach<NSView>();
}

TEST_F(OwnOperationTests, AnEndingStyleIsReadRenamedAndLosesObservers) {
    auto style = alloc<EndingAs<ZelStyle>>();
    style->initWithIdentifier("passing", domain->defaultScheme());
    style->last = [this](ZelStyle& ending) {
        ending.removeStyleUpdateObserverWithOwner(observer);
        ending.setIdentifier("ending");
        EXPECT_EQ(ending.identifier(), "ending");
        ending.setValue(NSColor::blackColor(), "labelColor");
        EXPECT_EQ(ending.labelColor(), NSColor::blackColor());
        EXPECT_FALSE(ending.isDarkStyle());
        ++ended;
    };
    style->addStyleUpdateObserver([](const auto&, const auto&, bool) {}, observer, false);
    style.reset();
    EXPECT_EQ(ended, 1);
}

TEST_F(OwnOperationTests, AnEndingDomainIsReadAndLosesListeners) {
    auto passing = alloc<EndingAs<ZelStyleDomain>>();
    passing->initWithDomainIdentifier("passing");
    passing->last = [this](ZelStyleDomain& ending) {
        ending.unregisterChangeHandlersWithOwner(observer);
        EXPECT_EQ(ending.domainIdentifier(), "passing");
        EXPECT_EQ(ending.currentScheme(), ending.schemeForIdentifier("default"));
        ending.notifyForStyleChangeOf(nullptr, {.force = true});
        ++ended;
    };
    passing->registerChangeHandler(recorder.handler("observer"), observer);
    recorder.take();
    passing.reset();
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(recorder.take(), StyleCalls());
}

} // namespace
} // namespace zeltest
