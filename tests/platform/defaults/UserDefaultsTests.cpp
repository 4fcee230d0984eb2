// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSUserDefaultsInMemory.h>

#include "UserDefaultsTestsFolder.h"

#include <memory>
#include <stdexcept>
#include <thread>

namespace zel_tests {
namespace {

using zel::NSNumber;
using zel::NSUserDefaults;
using zel::NSUserDefaultsStore;
using zel::NSUserDefaultsValue;

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

struct DefaultsFileLocation : UserDefaultsFolder {};

TEST_F(DefaultsFileLocation, IsAFolderNamedAfterTheProcessInTheConfigurationFolder) {
    EXPECT_TRUE(NSUserDefaults::standardUserDefaults().setObject("always-dark", "mode"));
    EXPECT_EQ(text(), "mode = \"always-dark\"\n");
    EXPECT_EQ(stringIn(NSUserDefaults::standardUserDefaults(), "mode"), "always-dark");
}

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
    zel::NSProcessInfo::setProcessName("Sculptor");
    EXPECT_EQ(stringIn(defaults, "mode"), "(none)");
    EXPECT_TRUE(defaults.setObject("sculpting", "mode"));
    EXPECT_TRUE(std::filesystem::exists(folder + "/Sculptor/defaults.conf"));
    zel::NSProcessInfo::setProcessName("Painter");
    EXPECT_EQ(stringIn(defaults, "mode"), "painting");
}

TEST_F(DefaultsFileLocation, IsUnderTheHomeFolderWithoutAnAbsoluteConfigurationFolder) {
    ::setenv("HOME", folder.c_str(), 1);
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    for (const char* const ignored : {"", "relative/folder", "./x"}) {
        ::setenv("XDG_CONFIG_HOME", ignored, 1);
        EXPECT_TRUE(NSUserDefaults().setObject(ignored, "mode"));
        EXPECT_EQ(storedString("mode"), ignored);
        EXPECT_FALSE(std::filesystem::exists("relative"));
        EXPECT_TRUE(std::filesystem::remove(folder + "/.config/Painter/defaults.conf"));
    }
    std::filesystem::current_path(before);
    ::unsetenv("XDG_CONFIG_HOME");
    EXPECT_TRUE(NSUserDefaults().setObject("value", "mode"));
    EXPECT_TRUE(std::filesystem::exists(folder + "/.config/Painter/defaults.conf"));
    EXPECT_EQ(modeOf(folder + "/.config"), 0700u);
    EXPECT_EQ(modeOf(folder + "/.config/Painter"), 0700u);
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
        {"a/b", "a%2Fb"},
        {"a%2Fb", "a%252Fb"},
        {std::string("nul\0name", 8), "nul%00name"},
        {"line\nbreak\x7F", "line%0Abreak%7F"},
        {"Grüße …", "Grüße …"},
    };
    for (const NamedFolder& named : cases) {
        zel::NSProcessInfo::setProcessName(named.name);
        EXPECT_TRUE(NSUserDefaults().setObject("value", "mode")) << named.folder;
        EXPECT_TRUE(std::filesystem::exists(folder + '/' + named.folder + "/defaults.conf"))
            << named.folder;
    }
}

TEST_F(DefaultsFileLocation, TellsLongNamesApart) {
    const std::string longName(400, 'n');
    zel::NSProcessInfo::setProcessName(longName + "1");
    EXPECT_TRUE(NSUserDefaults().setObject("first", "mode"));
    zel::NSProcessInfo::setProcessName(longName + "2");
    EXPECT_EQ(storedString("mode"), "(none)");
    EXPECT_TRUE(NSUserDefaults().setObject("second", "mode"));
    zel::NSProcessInfo::setProcessName(longName + "1");
    EXPECT_EQ(storedString("mode"), "first");
}

TEST_F(DefaultsFileLocation, CanBeWrittenWhileTheProcessEnds) {
    const int result = inChild([]() -> int {
        std::atexit([] {
            const bool written = NSUserDefaults::standardUserDefaults().setObject("end", "mode");
            zeltest::endAtOnce(written ? 42 : 1);
        });
        NSUserDefaults::standardUserDefaults().setObject("start", "mode");
        std::exit(0);
    });
    EXPECT_EQ(result, 42);
    EXPECT_EQ(storedString("mode"), "end");
}

} // namespace
} // namespace zel_tests
