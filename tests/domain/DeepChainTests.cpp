// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

/// An object whose parent the library has to ask it for.
struct Asked : NSObject, ZelStyleable {
    std::weak_ptr<NSObject> above;
    std::optional<std::string> domainIdentifierOfZelStyleable() const override {
        return std::string(ZelStyleDomainIdentifierDefault);
    }
    std::shared_ptr<NSObject> parentZelStyleable() const override { return above.lock(); }
    const ZelStyleable* asZelStyleable() const noexcept override { return this; }
};

/// Chains so long that a walk by nested calls would not fit on the stack.
class DeepChainTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyleScheme> scheme = domain->defaultScheme();
    const std::shared_ptr<ZelStyle> main = addStyle(scheme, "main");
    const std::shared_ptr<ZelStyle> other = addChildStyle(main, "other");
    Recorder recorder;

    DeepChainTests() { domain->setCurrentScheme(scheme); }

    template <class Object>
    void expectDelivery(const std::shared_ptr<Object>& first, const std::shared_ptr<Object>& last) {
        last->registerStyleableChangeHandler(recorder.handler("last"));
        EXPECT_EQ(recorder.take(), (StyleCalls{{"last", main, 0}}));
        first->setCustomZelStyleIdentifier("other");
        EXPECT_EQ(recorder.take(), (StyleCalls{{"last", other, 1}}));
        EXPECT_EQ(ZelStyle::forStyleable(last), other);
    }
};

TEST_F(DeepChainTests, TheLastOf100000ViewsHearsOfTheFirst) {
    std::vector<std::shared_ptr<NSView>> chain{alloc<NSView>()};
    for (int i = 1; i < 100'000; ++i) {
        chain.push_back(alloc<NSView>());
        chain[chain.size() - 2]->addSubview(chain.back());
    }
    expectDelivery(chain.front(), chain.back());
}

TEST_F(DeepChainTests, TheLastOf100000ObjectsThatAreAskedHearsOfTheFirst) {
    std::vector<std::shared_ptr<Asked>> chain{alloc<Asked>()};
    for (int i = 1; i < 100'000; ++i) {
        chain.push_back(alloc<Asked>());
        chain.back()->above = chain[chain.size() - 2];
    }
    expectDelivery(chain.front(), chain.back());
}

TEST_F(DeepChainTests, TheLastOf10000StylesFollowsTheFirst) {
    std::vector<std::shared_ptr<ZelStyle>> chain{main};
    for (int i = 1; i < 10'000; ++i) {
        chain.push_back(chain.back()->inheritedStyleWithChanges(
            [](const auto& parent, const auto& child) {
                child->setAccentColor(parent->accentColor());
            },
            "style" + std::to_string(i), scheme));
    }
    const auto view = alloc<NSView>();
    view->setCustomZelStyleIdentifier("style9999");
    view->registerStyleableChangeHandler(recorder.handler("view"));
    recorder.calls.clear();
    main->updateStyleWithChanges([](const auto& style) {
        style->setAccentColor(NSColor::whiteColor());
        return true;
    });
    EXPECT_EQ(chain.back()->accentColor(), NSColor::whiteColor());
    EXPECT_EQ(chain.back()->seed(), 10'000U); // one of each style of the chain
    EXPECT_EQ(recorder.takeNames(), Names(10'000, "view"));
    EXPECT_TRUE(chain.back()->isChildOf(main));
}

} // namespace
} // namespace zeltest
