// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSUserDefaults.h>

#include <map>
#include <mutex>
#include <string>

namespace zel::tool {

/// A defaults store that forgets everything with the process. Threads: any.
class MemoryDefaults final : public NSUserDefaultsStore {
public:
    std::optional<NSUserDefaultsValue> objectForKey(std::string_view key) override {
        const std::scoped_lock guard(mutex_);
        const auto found = values_.find(key);
        return found == values_.end() ? std::nullopt : std::optional(found->second);
    }
    bool setObject(const std::optional<NSUserDefaultsValue>& value,
                   std::string_view forKey) override {
        const std::scoped_lock guard(mutex_);
        values_.erase(std::string(forKey));
        if (value) {
            values_.emplace(forKey, *value);
        }
        return true;
    }

private:
    std::mutex mutex_;
    std::map<std::string, NSUserDefaultsValue, std::less<>> values_; // under mutex_
};

} // namespace zel::tool
