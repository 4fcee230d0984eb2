// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSUserDefaultsInMemory.h>

namespace zel::inline v1 {

std::optional<NSUserDefaultsValue> NSUserDefaultsInMemory::objectForKey(std::string_view key) {
    const std::lock_guard guard(mutex_);
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

bool NSUserDefaultsInMemory::setObject(const std::optional<NSUserDefaultsValue>& value,
                                       std::string_view forKey) {
    std::string key(forKey);
    const std::lock_guard guard(mutex_);
    if (value) {
        values_.insert_or_assign(std::move(key), *value);
    } else {
        values_.erase(key);
    }
    return true;
}

} // namespace zel::inline v1
