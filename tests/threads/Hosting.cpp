// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Parts.h"

namespace zeltest {
namespace {

using namespace zel;

/// A node in a tree of its own thread's making, as an integration has for each of its objects.
class Placed : public NSObject {
public:
    ZelStyleableNode node{*this};
};

class Observer : public NSObject {
public:
    std::atomic<std::uint64_t> changes{0};
    void observeValueForKeyPath(std::string_view, NSObject&, const NSKeyValueChange&,
                                const void*) override {
        ++changes;
    }
};

/// What any thread may ask of domains, schemes and of the platform around them.
class Hosting final : public Part {
public:
    using Part::Part;

    void act() override {
        switch (any(11)) {
        case 0:
            return askForDomains();
        case 1:
            return askForSchemes();
        case 2:
            return replaceStyles();
        case 3:
            return post();
        case 4:
            return observe();
        case 5:
            return place();
        case 6:
            return storeDefaults();
        case 7:
            return describeModes();
        case 8:
            return describeTheHost();
        case 9:
            return endADomain();
        default:
            return convertColors();
        }
    }

private:
    void askForDomains() {
        progress.begin("ask for domains");
        require(ZelStyleDomain::defaultDomain() == stage.domain, "another default domain");
        require(ZelStyleDomain::domainForIdentifier("editor") == stage.editor, "another domain");
        const std::string name = "made " + std::to_string(any(300));
        const auto made = ZelStyleDomain::domainForIdentifier(name);
        require(made && made->domainIdentifier() == name, "a domain has another name");
        require(ZelStyleDomain::domainForIdentifier(name) == made, "two domains of one name");
        require(made->currentScheme() == made->defaultScheme(), "a new domain has another scheme");
        made->setStyleClass(typeid(Hosting));
        (void)made->styleClass();
    }
    void askForSchemes() {
        progress.begin("ask for schemes");
        const std::string name = "made " + std::to_string(any(300));
        const auto made = stage.editor->schemeForIdentifier(name);
        require(made && made->domain() == stage.editor, "a scheme is of another domain");
        require(stage.editor->schemeForIdentifier(name) == made, "two schemes of one name");
        require(stage.editor->lightScheme() != stage.editor->darkScheme(), "schemes are mixed up");
    }
    void replaceStyles() {
        progress.begin("replace a scheme's styles");
        const auto scheme = stage.editor->schemeForIdentifier("made " + std::to_string(any(300)));
        scheme->setStylesByIdentifier({{"main", anyPainted().style}});
        const auto found = scheme->styleForIdentifier("main");
        require(!found || stage.knows(found), "an unknown style is found");
        scheme->setStylesByIdentifier({});
    }
    void post() {
        progress.begin("observe and post notifications");
        auto& center = NSNotificationCenter::defaultCenter();
        const auto observer = alloc<NSObject>();
        const auto sender = alloc<NSObject>();
        auto calls = std::make_shared<std::atomic<int>>(0);
        center.addObserver(
            observer, [calls](const NSNotification&) { ++*calls; }, "threads", sender);
        center.postNotificationName("threads", sender);
        center.postNotificationName("threads", nullptr);
        require(*calls == 1, "a notification was not delivered once");
        center.removeObserver(*observer, "threads", nullptr);
        center.postNotificationName("threads", sender);
        require(*calls == 1, "an observer is called after its removal");
        NSMainQueue::mainQueue().async([calls] { ++*calls; });
    }
    void observe() {
        progress.begin("observe values");
        const auto observed = NSApplication::sharedApplication(); // shared by all
        const auto observer = alloc<Observer>();
        observed->addObserver(observer, "threads", NSKeyValueObservingOptions::Prior, this);
        observed->willChangeValueForKey("threads");
        observed->didChangeValueForKey("threads");
        require(observer->changes >= 2, "an observer heard nothing");
        if (any(2) == 0) {
            observed->removeObserver(*observer, "threads", this);
        }
        require(NSApp() == observed, "another application");
        require(ZelStyleSystemAppearance::sharedSystemAppearance()->currentAppearanceType() <= 1,
                "an appearance that there is not");
    }
    void place() {
        progress.begin("move nodes");
        std::array<std::shared_ptr<Placed>, 5> placed;
        for (auto& each : placed) {
            each = alloc<Placed>();
            each->setLastZelStyle(anyPainted().style->token());
        }
        for (std::size_t i = 1; i < placed.size(); ++i) {
            placed[i]->node.setParent(&placed[any(i)]->node);
        }
        placed[any(placed.size())]->node.leave();
        placed[any(placed.size())].reset();
    }
    void storeDefaults() {
        progress.begin("store defaults");
        auto& defaults = NSUserDefaults::standardUserDefaults();
        const std::string key = "key " + std::to_string(any(10));
        defaults.setObject(NSNumber::numberWithUnsignedLong(any(100)), key);
        (void)defaults.objectForKey(key);
        defaults.setObject(std::nullopt, key);
        (void)ZelStyleManager::sharedStyleManager()->activeModeIdentifier();
        (void)ZelStyleManager::sharedStyleManager()->activeMode();
    }
    void describeModes() {
        progress.begin("describe modes and providers");
        const auto& mode = mode_;
        mode->setName("name " + std::to_string(any(10)));
        mode->setIdentifier("identifier " + std::to_string(any(10)));
        mode->setRank(any(10));
        mode->setManager(ZelStyleManager::sharedStyleManager());
        require(mode->name()->starts_with("name ") &&
                    mode->identifier()->starts_with("identifier "),
                "a mode's fields are mixed up");
        require(mode->rank() < 10 && mode->manager() && !mode->active(), "a mode's field is torn");
        mode->setActive(false);
        const auto& provider = provider_;
        provider->setProviderBlock([](const auto&, const auto&) {});
        provider->setWillApplyBlock(nullptr);
        provider->setDidApplyBlock(nullptr);
        provider->setRequiredDefaultValueProviders(
            ZelStyleDefaultValueProvider::Identifiers{"base"});
        require(provider->requiredDefaultValueProviders() && provider->identifier() == "threads",
                "a provider's field is torn");
        require(!provider->willApplyBlock() && !provider->didApplyBlock(), "hooks from nowhere");
        provider->provideDefaultValuesFor(anyPainted().style, nullptr);
        provider->willApply(provider, anyPainted().style, nullptr);
        provider->didApply(provider, anyPainted().style, nullptr);
        require(provider->providerBlock() != nullptr, "a provider has lost its block");
    }
    void endADomain() {
        progress.begin("make a domain that ends");
        auto made = alloc<ZelStyleDomain>()->initWithDomainIdentifier("ending");
        const std::weak_ptr<ZelStyleDomain> watched = made;
        const auto scheme = made->defaultScheme();
        const auto style =
            alloc<ZelStyle>()->initWithIdentifier("main", scheme, anyPainted().style);
        scheme->addStyle(style);
        const auto owner = alloc<NSObject>();
        auto held = std::make_shared<int>(); // by the handler
        const std::weak_ptr<int> watchedToo = held;
        bool isTold = false;
        made->registerChangeHandler(
            [&isTold, held = std::move(held), &style](const auto&, const auto& told, auto) {
                isTold = told == style;
            },
            owner);
        require(isTold, "a new domain's listener isn't told");
        made.reset();
        require(watched.expired() && watchedToo.expired(), "a domain outlives whoever made it");
        require(!scheme->domain() && !style->domain(), "a domain that ended is still known");
    }
    void describeTheHost() {
        progress.begin("describe the host");
        NSProcessInfo::setProcessName("threads");
        require(NSProcessInfo::processName() == "threads", "another process");
        require(NSProcessInfo::isOperatingSystemAtLeastVersion({10, 14, 0}), "an older system");
        NSProcessInfo::setOperatingSystemVersion({10, 14, 0});
        NSBundle::setStringTable(
            [](std::string_view) { return std::optional<std::string>("text"); });
        require(NSBundle::localizedStringForKey("key") == "text", "another text");
        require(localizedCaseInsensitiveCompare("a", "B") < 0, "another order");
        setLocalizedComparison([](std::string_view, std::string_view) { return -1; });
        setLocalizedComparison(nullptr);
        NSMainQueue::mainQueue().setWakeHook([] {});
    }
    void convertColors() {
        progress.begin("convert colours");
        NSSystemColors colors;
        colors.blue = NSColor::blackColor();
        NSSystemColors::setSystemColors(colors);
        require(NSSystemColors::systemColors().blue == NSColor::systemBlueColor(), "another blue");
        const auto& space =
            NSColorSpace::customColorSpace("threads " + std::to_string(any(100)), 2, true);
        const auto custom = NSColor::colorWithColorSpace(space, {0.5, 1});
        require(!custom.sRGBComponents() && custom.modifiableColor(), "a colour changed its space");
        require(NSColor::whiteColor().colorWithZelStyleEffect(ZelStyleEffectDim, true) !=
                    NSColor::whiteColor(),
                "an effect has none");
        require(NSAppearance::appearanceNamed("x").bestMatchFromAppearancesWithNames({"x"}) == "x",
                "an appearance doesn't match itself");
    }

    const std::shared_ptr<ZelStyleManagerMode> mode_ =
        alloc<ZelStyleManagerMode>()->initWithIdentifier("identifier 0", 0, "name 0");
    const std::shared_ptr<ZelStyleDefaultValueProvider> provider_ =
        ZelStyleDefaultValueProvider::providerWithIdentifier("threads", std::nullopt, nullptr);
};

} // namespace

const MakePart makeHosting = makePart<Hosting>;

} // namespace zeltest
