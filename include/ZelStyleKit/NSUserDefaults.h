// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>
#include <ZelStyleKit/NSNumber.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace zel::inline v1 {

/// What the defaults hold under a key: a string, or a number or boolean.
using NSUserDefaultsValue = std::variant<std::string, NSNumber>;

/// A persistent key-value store for each user and application.
/// Threads: called from any thread, with no private lock held; a store guards itself. It may do
/// what a handler may. Failure: never throws. What can't be read is absent; a store that can't
/// write answers false and leaves what it holds as it was.
class ZEL_EXPORT NSUserDefaultsStore {
public:
    virtual ~NSUserDefaultsStore();
    /// The value under a key, read afresh; absent where there is none.
    [[nodiscard]] virtual std::optional<NSUserDefaultsValue> objectForKey(std::string_view key) = 0;
    /// Stores the value, or removes the key's entry for none. True once it is durable.
    virtual bool setObject(const std::optional<NSUserDefaultsValue>& value,
                           std::string_view forKey) = 0;
};

/// The user's defaults: a file of the user's and application's own unless the host replaces the
/// store. A value whose writing failed holds for the rest of this process.
/// A symbolic link to the file is followed and stays. What is no file, may not be read or is larger
/// than 8 MiB is left alone: it holds nothing and is not written. What is another user's is read
/// and not written, by root neither. Nobody waits for a pipe or a device, and for another process's
/// writing only a writer does, two seconds at most.
/// Owns: the store. Threads: any thread, in handlers and destructors as well. Failure: never
/// throws.
class ZEL_EXPORT NSUserDefaults {
public:
    NSUserDefaults();
    ~NSUserDefaults();
    NSUserDefaults(const NSUserDefaults&) = delete;
    NSUserDefaults& operator=(const NSUserDefaults&) = delete;

    /// `standardUserDefaults`
    static NSUserDefaults& standardUserDefaults();

    /// `objectForKey:`
    [[nodiscard]] std::optional<NSUserDefaultsValue> objectForKey(std::string_view key) const;
    /// `setObject:forKey:`; none removes the entry. True when the store took it durably.
    bool setObject(const std::optional<NSUserDefaultsValue>& value, std::string_view forKey);

    /// Replaces the store; none brings the file back. Values that only this process held go.
    void setStore(std::shared_ptr<NSUserDefaultsStore> store);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace zel::inline v1
