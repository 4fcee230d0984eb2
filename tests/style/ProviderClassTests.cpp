// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"
#include "tests/support/Providers.h"

namespace zeltest {
namespace {

using namespace zel;

using Names = std::vector<std::string>;

class ProviderClassTests : public StylingTests {};

/// A provider whose class does what a block would do.
class Particular : public ZelStyleDefaultValueProvider {
public:
    Names* calls = nullptr;

    void provideDefaultValuesFor(const Style& style,
                                 const std::shared_ptr<ZelStyleScheme>& withScheme) override {
        note("fills " + style->identifier().value_or("") + " for " +
             withScheme->identifier().value_or(""));
    }
    void willApply(const Provider& provider, const Style& toStyle,
                   const std::shared_ptr<ZelStyleScheme>& withScheme) override {
        note("will " + named(provider, toStyle, withScheme));
    }
    void didApply(const Provider& provider, const Style& toStyle,
                  const std::shared_ptr<ZelStyleScheme>& withScheme) override {
        note("did " + named(provider, toStyle, withScheme));
    }

private:
    void note(const std::string& what) { calls->push_back("particular " + what); }
    static std::string named(const Provider& provider, const Style& style,
                             const std::shared_ptr<ZelStyleScheme>& scheme) {
        return provider->identifier().value_or("") + " to " + style->identifier().value_or("") +
               " for " + scheme->identifier().value_or("");
    }
};

TEST_F(ProviderClassTests, ASubclassIsAskedWhereABlockWouldBeCalled) {
    const ProvidersRestored restored;
    removeAllProviders();
    Names calls;
    const auto particular = alloc<Particular>();
    particular->calls = &calls;
    ZelStyle::addDefaultValueProvider(
        particular->initWithIdentifier("particular", std::nullopt, nullptr));
    addProvider("b", std::vector<std::string>{"particular"},
                [&](auto&&...) { calls.push_back("b"); });
    const auto scheme = alloc<ZelStyleScheme>()->initWithIdentifier("sepia", nullptr);
    (void)alloc<ZelStyle>()->initWithIdentifier("main", scheme);
    EXPECT_EQ(
        calls,
        (Names{"particular will particular to main for sepia", "particular fills main for sepia",
               "particular did particular to main for sepia", "particular will b to main for sepia",
               "b", "particular did b to main for sepia"}));
}

TEST_F(ProviderClassTests, AProviderIsMadeOfTheClassThatIsAskedForIt) {
    const std::shared_ptr<Particular> made =
        ZelStyleDefaultValueProvider::providerWithIdentifier<Particular>(
            "particular", std::vector<std::string>{"base"}, nullptr);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->identifier(), "particular");
    EXPECT_EQ(made->requiredDefaultValueProviders(),
              ZelStyleDefaultValueProvider::Identifiers{"base"});
}

} // namespace
} // namespace zeltest
