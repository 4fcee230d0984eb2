// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Styling.h"

// Named in what the process prints at its end; that takes external functions.
[[gnu::noinline]] void tellHandlers(zel::ZelStyleDomain& domain) {
    domain.notifyForStyleChangeOf(nullptr, {.force = true});
}
[[gnu::noinline]] bool chooseAMode(zel::ZelStyleManager& manager) {
    return manager.setActiveModeIdentifier("always-dark");
}

namespace zeltest {
namespace {

using namespace zel;

/// A store that tells the default domain's listeners where it is read or written.
class TellingDefaults : public DefaultsInMemory {
public:
    TellingDefaults(bool whenRead, bool whenWritten)
        : whenRead_(whenRead), whenWritten_(whenWritten) {}

    std::optional<NSUserDefaultsValue> objectForKey(std::string_view key) override {
        if (whenRead_) {
            tellHandlers(*domain_);
        }
        return DefaultsInMemory::objectForKey(key);
    }
    bool setObject(const std::optional<NSUserDefaultsValue>& value,
                   std::string_view forKey) override {
        if (whenWritten_) {
            tellHandlers(*domain_);
        }
        return DefaultsInMemory::setObject(value, forKey);
    }

private:
    const std::shared_ptr<ZelStyleDomain> domain_ = ZelStyleDomain::defaultDomain();
    const bool whenRead_;
    const bool whenWritten_;
};

class ManagerLockOrderDeathTests : public StylingTests {
protected:
    ManagerLockOrderDeathTests() {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        ZelStyleManager::setup();
        addStyle(domain->lightScheme(), "main");
        addStyle(domain->darkScheme(), "main");
        domain->registerChangeHandler([this](const auto&, const auto&, auto) { ++calls; }, owner);
        calls = 0;
    }

    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<Plain> owner = makePlain();
    int calls = 0;
};

TEST_F(ManagerLockOrderDeathTests, AStoreThatTellsHandlersEndsTheProcessWithBothStacks) {
    NSUserDefaults::standardUserDefaults().setStore(std::make_shared<TellingDefaults>(true, false));
    EXPECT_DEATH(chooseAMode(*ZelStyleManager::sharedStyleManager()),
                 "\"table of handlers\" .* is taken inside \"list of modes\" .*\n"
                 "the rule: walked by a notification, which calls them\n"
                 "of the lock that is held: modes are applied without it; a store that is read "
                 "under it uses nothing that locks\n"
                 "\"list of modes\" .* was taken here:\n(.*\n)*.*chooseAMode(.*\n)*"
                 "\"table of handlers\" .* is taken here:\n(.*\n)*.*tellHandlers(.*\n)*"
                 ".*chooseAMode");
}

TEST_F(ManagerLockOrderDeathTests, AStoreMayTellHandlersWhereItIsWritten) {
    NSUserDefaults::standardUserDefaults().setStore(std::make_shared<TellingDefaults>(false, true));
    EXPECT_TRUE(chooseAMode(*ZelStyleManager::sharedStyleManager()));
    EXPECT_EQ(calls, 2); // by the store, then by the switch to dark
}

TEST_F(ManagerLockOrderDeathTests, AStoreMayTellHandlersWhereAHostReadsIt) {
    NSUserDefaults::standardUserDefaults().setStore(std::make_shared<TellingDefaults>(true, false));
    EXPECT_FALSE(NSUserDefaults::standardUserDefaults().objectForKey("key"));
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace zeltest
