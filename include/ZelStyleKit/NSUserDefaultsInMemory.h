// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSUserDefaults.h>

#include <functional>
#include <map>
#include <mutex>

namespace zel::inline v1 {

/// Defaults that no file holds: for tests, and for programs that remember nothing.
/// Owns: the values, which end with it. Threads: any.
/// Failure: std::bad_alloc only, which NSUserDefaults catches; what it holds is then as it was.
class ZEL_EXPORT NSUserDefaultsInMemory : public NSUserDefaultsStore {
public:
    [[nodiscard]] std::optional<NSUserDefaultsValue> objectForKey(std::string_view key) override;
    /// Always true.
    bool setObject(const std::optional<NSUserDefaultsValue>& value,
                   std::string_view forKey) override;

private:
    std::mutex mutex_;
    std::map<std::string, NSUserDefaultsValue, std::less<>> values_; ///< guarded by mutex_
};

} // namespace zel::inline v1
