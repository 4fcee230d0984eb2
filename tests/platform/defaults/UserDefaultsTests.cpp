// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSUserDefaultsInMemory.h>

#include "DefaultsFolder.h"

#include <memory>
#include <stdexcept>
#include <thread>

#include <pwd.h>

namespace zel_tests {
namespace {

using zel::NSNumber;
using zel::NSUserDefaults;
using zel::NSUserDefaultsStore;
using zel::NSUserDefaultsValue;

const char* homeOfAccount = nullptr; ///< none: the user has no account

/// A host's store, which can be made to refuse or to break.
class MemoryStore final : public zel::NSUserDefaultsInMemory {
public:
    std::optional<NSUserDefaultsValue> objectForKey(std::string_view key) override {
        fail();
        return NSUserDefaultsInMemory::objectForKey(key);
    }
    bool setObject(const std::optional<NSUserDefaultsValue>& value,
                   std::string_view forKey) override {
        fail();
        return !refuses && NSUserDefaultsInMemory::setObject(value, forKey);
    }
    void hold(const char* value) { NSUserDefaultsInMemory::setObject(value, "mode"); }
    [[nodiscard]] std::optional<NSUserDefaultsValue> held(std::string_view key) {
        return NSUserDefaultsInMemory::objectForKey(key);
    }

    bool refuses = false;
    bool throws = false;

private:
    void fail() const {
        if (throws) {
            throw std::runtime_error("broken");
        }
    }
};

TEST(DefaultsInMemory, HoldEachKeysLastValueUntilItIsRemoved) {
    zel::NSUserDefaultsInMemory store;
    EXPECT_EQ(store.objectForKey("mode"), std::nullopt);
    EXPECT_TRUE(store.setObject("first", "mode"));
    EXPECT_TRUE(store.setObject("second", "mode"));
    EXPECT_TRUE(store.setObject(NSNumber::numberWithLong(3), "other"));
    EXPECT_EQ(store.objectForKey("mode"), NSUserDefaultsValue("second"));
    EXPECT_TRUE(store.setObject(std::nullopt, "mode"));
    EXPECT_TRUE(store.setObject(std::nullopt, "absent"));
    EXPECT_EQ(store.objectForKey("mode"), std::nullopt);
    EXPECT_EQ(store.objectForKey("other"), NSUserDefaultsValue(NSNumber::numberWithLong(3)));
}

struct HostStore : ::testing::Test {
    HostStore() { defaults.setStore(store); }
    std::shared_ptr<MemoryStore> store = std::make_shared<MemoryStore>();
    NSUserDefaults defaults;
};

TEST_F(HostStore, TakesWhatIsSetAndAnswersWhatIsAsked) {
    EXPECT_TRUE(defaults.setObject("always-dark", "mode"));
    EXPECT_EQ(store->held("mode"), NSUserDefaultsValue("always-dark"));
    store->hold("always-light");
    EXPECT_EQ(stringIn(defaults, "mode"), "always-light");
}

TEST_F(HostStore, AValueThatItRefusesHoldsInThisProcess) {
    store->hold("old");
    store->refuses = true;
    EXPECT_FALSE(defaults.setObject("new", "mode"));
    EXPECT_EQ(stringIn(defaults, "mode"), "new");
    EXPECT_FALSE(defaults.setObject("newer", "mode"));
    EXPECT_EQ(stringIn(defaults, "mode"), "newer");
    EXPECT_EQ(store->held("mode"), NSUserDefaultsValue("old"));
}

TEST_F(HostStore, ARemovalThatItRefusesHoldsInThisProcess) {
    store->hold("old");
    store->refuses = true;
    EXPECT_FALSE(defaults.setObject(std::nullopt, "mode"));
    EXPECT_EQ(defaults.objectForKey("mode"), std::nullopt);
}

TEST_F(HostStore, ALaterWriteThatSucceedsEndsWhatOnlyThisProcessHeld) {
    store->refuses = true;
    EXPECT_FALSE(defaults.setObject("held", "mode"));
    EXPECT_FALSE(defaults.setObject("held too", "other"));
    store->refuses = false;
    EXPECT_TRUE(defaults.setObject("stored", "mode"));
    store->hold("changed elsewhere");
    EXPECT_EQ(stringIn(defaults, "mode"), "changed elsewhere");
    EXPECT_EQ(stringIn(defaults, "other"), "held too");
}

TEST_F(HostStore, AnotherStoreEndsWhatOnlyThisProcessHeld) {
    store->refuses = true;
    EXPECT_FALSE(defaults.setObject("held", "mode"));
    defaults.setStore(std::make_shared<MemoryStore>());
    EXPECT_EQ(stringIn(defaults, "mode"), "(none)");
}

TEST_F(HostStore, OneThatThrowsIsOneThatHoldsNothingAndTakesNothing) {
    store->throws = true;
    EXPECT_EQ(stringIn(defaults, "mode"), "(none)");
    EXPECT_FALSE(defaults.setObject("held", "mode"));
    EXPECT_EQ(stringIn(defaults, "mode"), "held");
    store->throws = false;
    EXPECT_EQ(stringIn(defaults, "mode"), "held");
}

/// A store that refuses and has another take its place meanwhile.
class RetiringStore final : public NSUserDefaultsStore {
public:
    RetiringStore(NSUserDefaults& served, std::shared_ptr<NSUserDefaultsStore> next)
        : defaults(served), successor(std::move(next)) {}
    std::optional<NSUserDefaultsValue> objectForKey(std::string_view) override { return "retired"; }
    bool setObject(const std::optional<NSUserDefaultsValue>&, std::string_view) override {
        defaults.setStore(successor);
        return false;
    }
    NSUserDefaults& defaults;
    std::shared_ptr<NSUserDefaultsStore> successor;
};

TEST_F(HostStore, WhatOneRefusesThatIsReplacedMeanwhileIsNotHeldOverItsSuccessors) {
    store->hold("of the successor");
    defaults.setStore(std::make_shared<RetiringStore>(defaults, store));
    EXPECT_FALSE(defaults.setObject("refused", "mode"));
    EXPECT_EQ(stringIn(defaults, "mode"), "of the successor");
}

/// A store that uses the very defaults that it serves, while it is called and while it ends.
class CuriousStore final : public NSUserDefaultsStore {
public:
    explicit CuriousStore(NSUserDefaults& served) : defaults(served) {}
    ~CuriousStore() override { defaults.setObject("ended", "fate"); }
    std::optional<NSUserDefaultsValue> objectForKey(std::string_view key) override {
        return key == "outer" ? defaults.objectForKey("inner") : NSUserDefaultsValue("found");
    }
    bool setObject(const std::optional<NSUserDefaultsValue>&, std::string_view key) override {
        return key != "outer" || defaults.setObject("again", "inner");
    }
    NSUserDefaults& defaults;
};

TEST_F(HostStore, IsCalledAndEndedWithNoLockHeld) {
    NSUserDefaults other;
    other.setStore(std::make_shared<CuriousStore>(other));
    EXPECT_EQ(stringIn(other, "outer"), "found");
    EXPECT_TRUE(other.setObject("value", "outer"));
    other.setStore(store);
    EXPECT_EQ(store->held("fate"), NSUserDefaultsValue("ended"));
}

TEST_F(HostStore, CanBeReplacedWhileOthersReadAndWrite) {
    std::thread reader([&] {
        for (int i = 0; i < 2000; ++i) {
            EXPECT_NE(stringIn(defaults, "mode"), "(a number)");
        }
    });
    std::thread writer([&] {
        for (int i = 0; i < 2000; ++i) {
            defaults.setStore(std::make_shared<MemoryStore>());
        }
    });
    reader.join();
    writer.join();
    defaults.setStore(store);
    EXPECT_TRUE(defaults.setObject("last", "mode"));
    EXPECT_EQ(stringIn(defaults, "mode"), "last");
}

using DefaultsFileLocation = DefaultsFolder;

TEST_F(DefaultsFileLocation, NoStoreBringsTheFileBack) {
    write("mode = \"of the file\"\n");
    NSUserDefaults defaults;
    defaults.setStore(std::make_shared<MemoryStore>());
    EXPECT_EQ(stringIn(defaults, "mode"), "(none)");
    defaults.setStore(nullptr);
    EXPECT_EQ(stringIn(defaults, "mode"), "of the file");
}

TEST_F(DefaultsFileLocation, FollowsTheProcessNameThatTheHostSets) {
    NSUserDefaults defaults;
    EXPECT_TRUE(defaults.setObject("painting", "mode"));
    EXPECT_EQ(text(), "mode = \"painting\"\n");
    zel::NSProcessInfo::setProcessName("Sculptor");
    EXPECT_EQ(stringIn(defaults, "mode"), "(none)");
    EXPECT_TRUE(defaults.setObject("sculpting", "mode"));
    EXPECT_TRUE(std::filesystem::exists(folder + "/Sculptor/defaults.conf"));
    zel::NSProcessInfo::setProcessName("Painter");
    EXPECT_EQ(stringIn(defaults, "mode"), "painting");
}

TEST_F(DefaultsFileLocation, IsUnderTheHomeFolderWithoutAnAbsoluteConfigurationFolder) {
    ::setenv("HOME", folder.c_str(), 1);
    for (const char* const ignored : {"", "relative/folder", "./x"}) {
        ::setenv("XDG_CONFIG_HOME", ignored, 1);
        EXPECT_TRUE(NSUserDefaults().setObject(ignored, "mode"));
        EXPECT_TRUE(std::filesystem::remove(folder + "/.config/Painter/defaults.conf")) << ignored;
    }
    EXPECT_EQ(modeOf(folder + "/.config"), 0700u);
    ::unsetenv("XDG_CONFIG_HOME");
    EXPECT_TRUE(NSUserDefaults().setObject("value", "mode"));
    EXPECT_TRUE(std::filesystem::exists(folder + "/.config/Painter/defaults.conf"));
}

TEST_F(DefaultsFileLocation, IsUnderTheAccountsHomeFolderWithoutAHomeVariable) {
    ::unsetenv("XDG_CONFIG_HOME");
    for (const char* const noHome : {"", "not/absolute"}) {
        ::setenv("HOME", noHome, 1);
        homeOfAccount = folder.c_str();
        EXPECT_TRUE(NSUserDefaults().setObject("value", "k"));
        EXPECT_TRUE(std::filesystem::remove(folder + "/.config/Painter/defaults.conf"));
        for (const char* const none : {static_cast<const char*>(nullptr), "", "relative/home"}) {
            homeOfAccount = none;
            EXPECT_EQ(storedString("k"), "(none)");
            EXPECT_TRUE(fileRefuses("new"));
        }
    }
}

struct NamedFolder {
    std::string name;
    std::string folder;
};

TEST_F(DefaultsFileLocation, NeverLeavesItsFolderWhateverTheNameOfTheProcess) {
    const NamedFolder cases[] = {
        {"../../escape", "..%2F..%2Fescape"},
        {"..", "%2E%2E"},
        {".", "%2E"},
        {"/", "%2F"},
        {"a%2Fb", "a%252Fb"},
        {std::string("nul\0name", 8), "nul%00name"},
        {"line\nbreak\x7F", "line%0Abreak%7F"},
        {"Grüße …", "Grüße …"},
        {std::string(255, 'n'), std::string(255, 'n')},
        {std::string(400, 'n') + "1", std::string(238, 'n') + "%9D58A7481994F8BC"},
        {std::string(400, 'n') + "2", std::string(238, 'n') + "%9D58AA481994FDD5"},
    };
    for (const NamedFolder& named : cases) {
        zel::NSProcessInfo::setProcessName(named.name);
        EXPECT_TRUE(NSUserDefaults().setObject(named.name, "mode")) << named.folder;
        EXPECT_TRUE(std::filesystem::exists(folder + '/' + named.folder + "/defaults.conf"))
            << named.folder;
        EXPECT_EQ(storedString("mode"), named.name);
    }
}

TEST_F(DefaultsFileLocation, MayBeAFolderWhoseNameHasOddBytes) {
    for (const char* const name : {"/line\nbreak", "/\xFF\xC3", "/ \"'\\%*$", "/a//b/../c/."}) {
        ::setenv("XDG_CONFIG_HOME", (folder + name).c_str(), 1);
        std::filesystem::create_directories(folder + name + "/Painter/../..");
        EXPECT_TRUE(NSUserDefaults().setObject("value", "k")) << name;
        EXPECT_EQ(storedString("k"), "value") << name;
    }
}

TEST_F(DefaultsFileLocation, CanBeWrittenWhileTheProcessEnds) {
    EXPECT_TRUE(holdsInChild([]() -> bool {
        std::atexit([] {
            const bool written = NSUserDefaults::standardUserDefaults().setObject("end", "mode");
            zeltest::endAtOnce(written ? 42 : 1);
        });
        NSUserDefaults::standardUserDefaults().setObject("start", "mode");
        std::exit(0);
    }));
    EXPECT_EQ(storedString("mode"), "end");
}

} // namespace
} // namespace zel_tests

/// In the system's place.
extern "C" int getpwuid_r(uid_t /*user*/, passwd* account, char* /*buffer*/, std::size_t /*size*/,
                          passwd** found) {
    static std::string home;
    home = zel_tests::homeOfAccount == nullptr ? "" : zel_tests::homeOfAccount;
    account->pw_dir = home.data();
    *found = zel_tests::homeOfAccount == nullptr ? nullptr : account;
    return 0;
}
