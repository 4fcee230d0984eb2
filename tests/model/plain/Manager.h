// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/plain/Object.h"

#include <variant>

namespace plain {

class Mode;

/// The modes that a user can choose from, and the choice.
class Manager : public Object {
public:
    static Ref<Manager> sharedStyleManager();
    static void setup();
    void init() {}
    const std::vector<Ref<Mode>>& modes() const { return modes_; }
    void addMode(const Ref<Mode>& mode);
    void removeMode(const Ref<Mode>& mode);
    std::variant<std::string, std::uint64_t> activeModeIdentifier() const;
    void setActiveModeIdentifier(const Id& identifier);

private:
    void updateActiveMode();
    std::vector<Ref<Mode>> modes_;
};

class Mode : public Object {
public:
    Ref<Mode> initWithIdentifier(const Id& identifier, std::uint64_t rank, const Id& name);
    bool active() const { return false; } // no mode stores it
    void setActive(bool active);
    Ref<Manager> manager() const { return manager_.lock(); }
    void setManager(const Ref<Manager>& manager) { manager_ = manager; }
    Id identifier() const { return identifier_; }
    void setIdentifier(const Id& identifier) { identifier_ = identifier; }
    Id name() const { return name_; }
    void setName(const Id& name) { name_ = name; }
    std::uint64_t rank() const { return rank_; }
    void setRank(std::uint64_t rank) { rank_ = rank; }

private:
    Weak<Manager> manager_;
    Id identifier_, name_;
    std::uint64_t rank_ = 0;
};

} // namespace plain
