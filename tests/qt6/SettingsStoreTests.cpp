// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQtSettingsStore.h>

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using zel::NSNumber;
using Value = std::optional<zel::NSUserDefaultsValue>;

class QtSettingsStoreTests : public testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<zel::ZelQtSettingsStore> open() const {
        return std::make_unique<zel::ZelQtSettingsStore>(
            std::make_unique<QSettings>(file, QSettings::IniFormat));
    }
    /// The value as another process reads it.
    [[nodiscard]] Value stored(std::string_view key) const { return open()->objectForKey(key); }

    const QTemporaryDir folder;
    const QString file = folder.filePath("settings.ini");
};

TEST_F(QtSettingsStoreTests, AStringIsReadBack) {
    const auto store = open();
    for (const std::string text : {"always-dark", "", "zwei, drei", "@x \"y\" \xC3\xA4", "long"}) {
        EXPECT_TRUE(store->setObject(Value(text), "key"));
        EXPECT_EQ(stored("key"), Value(text));
    }
}

TEST_F(QtSettingsStoreTests, ANumberIsReadBackWithItsKind) {
    const auto store = open();
    for (const NSNumber number :
         {NSNumber::numberWithBool(true), NSNumber::numberWithBool(false),
          NSNumber::numberWithLong(-9007199254740993), NSNumber::numberWithDouble(0.1),
          NSNumber::numberWithUnsignedLong(18446744073709551615U)}) {
        EXPECT_TRUE(store->setObject(Value(number), "key"));
        EXPECT_EQ(stored("key"), Value(number));
    }
}

TEST_F(QtSettingsStoreTests, AStringStandsInTheFileAsItIs) {
    EXPECT_TRUE(open()->setObject(Value("always-dark"), "mode"));
    EXPECT_EQ(QSettings(file, QSettings::IniFormat).value("mode").toString(), "always-dark");
}

TEST_F(QtSettingsStoreTests, NoneRemovesTheEntry) {
    const auto store = open();
    store->setObject(Value("text"), "key");
    EXPECT_TRUE(store->setObject(std::nullopt, "key"));
    EXPECT_EQ(store->objectForKey("key"), std::nullopt);
    EXPECT_EQ(stored("key"), std::nullopt);
}

TEST_F(QtSettingsStoreTests, WhatAnotherProcessWroteIsRead) {
    const auto store = open();
    EXPECT_EQ(store->objectForKey("key"), std::nullopt);
    open()->setObject(Value("text"), "key");
    EXPECT_EQ(store->objectForKey("key"), Value("text"));
}

TEST_F(QtSettingsStoreTests, AListThatIsNoNumberIsAbsent) {
    {
        QSettings settings(file, QSettings::IniFormat);
        settings.setValue("three", QStringList{"long", "1", "2"});
        settings.setValue("digits", QStringList{"long", "one"});
        settings.setValue("kind", QStringList{"word", "1"});
    }
    EXPECT_EQ(stored("three"), std::nullopt);
    EXPECT_EQ(stored("digits"), std::nullopt);
    EXPECT_EQ(stored("kind"), std::nullopt);
}

TEST_F(QtSettingsStoreTests, WhatCantBeWrittenIsReported) {
    const QString blocked = folder.filePath("no folder");
    QFile plain(blocked);
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    zel::ZelQtSettingsStore store(
        std::make_unique<QSettings>(blocked + "/settings.ini", QSettings::IniFormat));
    EXPECT_FALSE(store.setObject(Value("text"), "key"));
}

} // namespace
