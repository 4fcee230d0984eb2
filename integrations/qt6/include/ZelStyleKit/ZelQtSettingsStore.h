// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSUserDefaults.h>

#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

class QSettings;

namespace zel::inline v1 {

/// The user's defaults in the application's QSettings:
/// `NSUserDefaults::standardUserDefaults().setStore(std::make_shared<ZelQtSettingsStore>())`,
/// before `ZelStyleManager::setup`. A string stands there as it is, a number as a list of two
/// words, its kind and its digits, since settings files keep no other types apart. Owns: the
/// settings. Threads: any, one at a time. Failure: what can't be read is absent.
class ZEL_EXPORT ZelQtSettingsStore final : public NSUserDefaultsStore {
public:
    /// The settings of the application, as its name and its organization's say.
    ZelQtSettingsStore();
    /// Other settings.
    explicit ZelQtSettingsStore(std::unique_ptr<QSettings> settings);
    ~ZelQtSettingsStore() override;

    [[nodiscard]] std::optional<NSUserDefaultsValue> objectForKey(std::string_view key) override;
    bool setObject(const std::optional<NSUserDefaultsValue>& value,
                   std::string_view forKey) override;

private:
    std::mutex mutex_;
    const std::unique_ptr<QSettings> settings_; // guarded by mutex_
};

} // namespace zel::inline v1
