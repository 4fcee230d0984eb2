// SPDX-License-Identifier: Apache-2.0
#include "tests/model/LibraryKit.h"
#include "tests/model/PlainKit.h"

namespace zeltest {

namespace {

/// The two providers that every process begins with, whatever stands in the registry now.
template <class Kit>
void restoreProviders() {
    for (const auto& each : Kit::providers()) {
        Kit::Style::removeDefaultValueProvider(each);
    }
    for (auto each = Kit::providers().rbegin(); each != Kit::providers().rend(); ++each) {
        Kit::Style::addDefaultValueProvider(*each); // "main" goes to the front
    }
}

/// Leaves a light system, no domain but "_reset"'s, no mode and nothing to be told.
template <class Kit>
void freshenWorld() {
    const auto shared = Kit::Manager::sharedStyleManager();
    while (!shared->modes().empty()) {
        shared->removeMode(shared->modes().front());
    }
    Kit::setSystemColors(false);
    Kit::store(std::nullopt);
    Kit::setDarkAppearanceExists(true);
    Kit::Domain::domainForIdentifier("_reset");
    Kit::appear("NSAppearanceNameAqua");
    Kit::tracker().determineFromSystemAppearance();
    Kit::drain();
    restoreProviders<Kit>();
}

} // namespace

void LibraryKit::freshen() {
    freshenWorld<LibraryKit>();
}

void PlainKit::freshen() {
    freshenWorld<PlainKit>();
}

void LibraryKit::setUp(bool withStyles) {
    zel::NSUserDefaults::standardUserDefaults().setStore(std::make_shared<DefaultsInMemory>());
    zel::NSBundle::setStringTable([](std::string_view key) { return std::string(key); });
    zel::NSApplication::sharedApplication();
    tracker();
    providers();
    if (withStyles) {
        Domain::setupStyles();
    }
    freshen();
}

void PlainKit::setUp(bool withStyles) {
    if (withStyles) {
        Domain::setupStyles();
    }
    freshen();
}

const std::vector<std::shared_ptr<plain::Provider>>& PlainKit::providers() {
    static const std::vector<std::shared_ptr<Provider>> both = {
        Provider::providerWithIdentifier(
            "main", std::vector<std::string>{"base"},
            [](const auto& style, const auto& scheme) { plain::provideMain(*style, scheme); }),
        Provider::providerWithIdentifier(
            "base", std::nullopt,
            [](const auto& style, const auto& scheme) { plain::provideBase(*style, scheme); })};
    return both;
}

} // namespace zeltest
