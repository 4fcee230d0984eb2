// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/plain/Domain.h"
#include "tests/model/plain/Manager.h"
#include <deque>

namespace plain {

/// One observer of the notification that the appearance changed.
struct CenterObserver {
    Weak<Object> observer;
    const Object* address;
    std::function<void()> callback;
    bool removed = false;
};

/// The address stands for the observer once that ends.
void startObserving(const Weak<Object>& observer, const Object* address,
                    std::function<void()> callback);
void stopObserving(const Object* address);

/// The shared tracker of the system's appearance.
class Tracker : public Object {
public:
    std::uint64_t currentAppearanceType() const { return type_; }
    void setCurrentAppearanceType(std::uint64_t type);
    void determineFromSystemAppearance();
    void addObserver(const Ref<Object>& observer) { observers_.emplace_back(observer); }
    void removeObserver(const Ref<Object>& observer);

private:
    void tellObservers(bool isPrior);
    std::uint64_t type_ = 0;
    std::vector<Weak<Object>> observers_;
};

/// A domain in the registry, in order of creation.
struct Registered {
    std::string identifier;
    Ref<Domain> domain;
};

/// Everything that a process has one of.
struct World {
    std::uint64_t lastSerial = 0; // of a style
    std::vector<Domain*> domains; // all that live
    std::vector<Style*> styles;   // all that live
    std::vector<Registered> registry;
    std::vector<Ref<Provider>> providers;
    std::uint64_t providerMutations = 0;
    std::map<std::string, Color> systemColors;
    bool stylesAreSetUp = false;
    std::string appearanceName = "NSAppearanceNameAqua";
    bool hasDarkAppearance = true; // what a system before 10.14 lacks
    std::deque<std::function<void()>> queue;
    std::vector<Ref<CenterObserver>> center;
    Ref<Tracker> tracker;
    Ref<Manager> manager;
    std::optional<std::variant<std::string, std::uint64_t>> stored; // the chosen mode
};

World& world();
Tracker& tracker();
void setEffectiveAppearance(const std::string& name);
/// Runs the tasks that wait now.
void drain();

} // namespace plain
