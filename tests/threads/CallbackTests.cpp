// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/OperationFixture.h"

namespace zeltest {
namespace {

using namespace zel;

using Provider = ZelStyleDefaultValueProvider;

/// Every operation, done in what the library calls besides handlers and observers.
class CallbackTests : public OperationTests {};

/// Stands in the registry of providers as long as the scope lasts.
class RegisteredProvider {
public:
    explicit RegisteredProvider(std::shared_ptr<Provider> provider)
        : provider_(std::move(provider)) {
        ZelStyle::addDefaultValueProvider(provider_);
    }
    RegisteredProvider(const RegisteredProvider&) = delete;
    RegisteredProvider& operator=(const RegisteredProvider&) = delete;
    ~RegisteredProvider() { ZelStyle::removeDefaultValueProvider(provider_); }

private:
    const std::shared_ptr<Provider> provider_;
};

/// What a callback of a provider's must not do.
const Names registryChanges{"ZelStyle::addDefaultValueProvider",
                            "ZelStyle::removeDefaultValueProvider"};

TEST_F(CallbackTests, AllButChangesOfTheRegistryAreDoneInAProvidersBlock) {
    const RegisteredProvider registered(Provider::providerWithIdentifier(
        "asked", std::nullopt, [this](const auto&, const auto&) { now(); }));
    doEach([this] { (void)alloc<ZelStyle>()->initWithIdentifier("root", world.scheme); },
           registryChanges);
}

TEST_F(CallbackTests, AllButChangesOfTheRegistryAreDoneInAProvidersHooks) {
    const auto hook = [this](const auto&, const auto&, const auto&, const auto&) { now(); };
    const auto makeRoot = [this] {
        (void)alloc<ZelStyle>()->initWithIdentifier("root", world.scheme);
    };
    const auto provider = Provider::providerWithIdentifier("asked", std::nullopt, nullptr);
    const RegisteredProvider registered(provider);
    provider->setWillApplyBlock(hook);
    doEach(makeRoot, registryChanges);
    provider->setWillApplyBlock(nullptr);
    provider->setDidApplyBlock(hook);
    doEach(makeRoot, registryChanges);
}

TEST_F(CallbackTests, AllAreDoneInANotificationCentersCallback) {
    auto& center = NSNotificationCenter::defaultCenter();
    const auto observer = makePlain();
    center.addObserver(
        observer, [this](const NSNotification&) { now(); }, "asked", nullptr);
    doEach([&] { center.postNotificationName("asked", nullptr); });
}

TEST_F(CallbackTests, AllAreDoneWhereAnObservedValueChanges) {
    class Observer : public NSObject {
    public:
        std::function<void()> onChange;
        void observeValueForKeyPath(std::string_view, NSObject&, const NSKeyValueChange&,
                                    const void*) override {
            onChange();
        }
    };
    const auto observer = alloc<Observer>();
    observer->onChange = [this] { now(); };
    for (const auto options :
         {NSKeyValueObservingOptions::Default, NSKeyValueObservingOptions::Prior}) {
        const auto observed = makePlain();
        observed->addObserver(observer, "key", options, this);
        doEach([&] {
            observed->willChangeValueForKey("key");
            observed->didChangeValueForKey("key");
        });
    }
}

TEST_F(CallbackTests, AllAreDoneInATaskOfTheMainQueue) {
    doEach([this] {
        NSMainQueue::mainQueue().async([this] { now(); });
        NSMainQueue::mainQueue().drain();
    });
}

TEST_F(CallbackTests, AllAreDoneInTheMainQueuesWakeHook) {
    NSMainQueue::mainQueue().setWakeHook([this] { now(); });
    doEach([] { NSMainQueue::mainQueue().async([] {}); });
}

TEST_F(CallbackTests, AllAreDoneInAHostsStringTable) {
    doEach([this] {
        NSBundle::setStringTable([this](std::string_view) {
            now();
            return std::optional<std::string>("text");
        });
        EXPECT_EQ(NSBundle::localizedStringForKey("key"), "text");
    });
    NSBundle::setStringTable(nullptr);
}

TEST_F(CallbackTests, AllAreDoneInAHostsComparison) {
    const auto manager = alloc<ZelStyleManager>();
    manager->init();
    for (const char* const name : {"a", "b"}) {
        manager->addMode(alloc<ZelStyleManagerMode>()->initWithIdentifier(name, 1, name));
    }
    doEach([&] {
        setLocalizedComparison([this](std::string_view a, std::string_view b) {
            now();
            return a.compare(b);
        });
        const auto mode = alloc<ZelStyleManagerMode>()->initWithIdentifier("c", 1, "c");
        manager->addMode(mode);
        manager->removeMode(mode);
    });
    setLocalizedComparison(nullptr);
}

TEST_F(CallbackTests, AllAreDoneInAHostsStore) {
    class Store : public NSUserDefaultsInMemory {
    public:
        std::function<void()> onRead = [] {};
        std::function<void()> onWrite = [] {};
        std::optional<NSUserDefaultsValue> objectForKey(std::string_view key) override {
            onRead();
            return NSUserDefaultsInMemory::objectForKey(key);
        }
        bool setObject(const std::optional<NSUserDefaultsValue>& value,
                       std::string_view forKey) override {
            onWrite();
            return NSUserDefaultsInMemory::setObject(value, forKey);
        }
    };
    auto& defaults = NSUserDefaults::standardUserDefaults();
    const auto reading = std::make_shared<Store>();
    reading->onRead = [this] { now(); };
    doEach([&] {
        defaults.setStore(reading); // one of the operations brings another
        (void)defaults.objectForKey("key");
    });
    const auto manager = alloc<ZelStyleManager>();
    manager->init();
    manager->addMode(alloc<ZelStyleManagerMode>()->initWithIdentifier("own", 1, "Own"));
    doEach([&] {
        defaults.setStore(reading);
        manager->setActiveModeIdentifier("own");
    });
    const auto writing = std::make_shared<Store>();
    writing->onWrite = [this] { now(); };
    doEach([&] {
        defaults.setStore(writing);
        defaults.setObject(NSUserDefaultsValue(std::string("value")), "key");
    });
}

/// A styleable object that does something where it is asked.
class Asked : public Styled {
public:
    std::function<void()> onParent = [] {};
    std::function<void()> onAssociated = [] {};
    std::function<void()> onDomain = [] {};

    std::shared_ptr<NSObject> parentZelStyleable() const override {
        onParent();
        return Styled::parentZelStyleable();
    }
    std::optional<std::vector<std::shared_ptr<NSObject>>> associatedZelStyleables() const override {
        onAssociated();
        return Styled::associatedZelStyleables();
    }
    std::optional<std::string> domainIdentifierOfZelStyleable() const override {
        onDomain();
        return Styled::domainIdentifierOfZelStyleable();
    }
};

TEST_F(CallbackTests, AllAreDoneWhereANotificationAsksAListenerForItsParent) {
    const auto listener = alloc<Asked>();
    listener->parent = first;
    domain->registerChangeHandler(recorder.handler("listener"), listener);
    listener->onParent = [this] { now(); };
    doEach([this] {
        domain->notifyForStyleChangeOf(first, {.force = true});
        const Names called = recorder.takeNames();
        EXPECT_NE(std::ranges::find(called, "listener"), called.end());
    });
}

TEST_F(CallbackTests, AllAreDoneWhereAnObjectIsAskedOutsideNotifications) {
    const auto object = alloc<Asked>();
    object->onParent = [this] { now(); };
    doEach([&] { (void)ZelStyle::forStyleable(object); });
    doEach([&] { EXPECT_FALSE(ZelStyleDomain::isEqualOrChildOf(object, first)); });
    object->onParent = [] {};
    object->onDomain = [this] { now(); };
    doEach([&] { (void)ZelStyleDomain::domainForStyleable(object); });
}

TEST_F(CallbackTests, AllAreDoneWhereATargetIsAskedForWhatIsAssociated) {
    const auto target = alloc<Asked>();
    target->associated = {first};
    target->onAssociated = [this] { now(); };
    doEach([&] { domain->notifyForStyleChangeOf(target, {.force = true}); });
    doEach([&] { // with a handler table locked
        deliver([&] { domain->notifyForStyleChangeOf(target, {.force = true}); });
    });
}

} // namespace
} // namespace zeltest
