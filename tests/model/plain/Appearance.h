// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/plain/Object.h"

#include <cstddef>

namespace plain {

/// One observer of the notification that the appearance changed.
struct CenterObserver {
    Weak<Object> observer;
    const Object* address;
    std::function<void()> callback;
    bool removed = false;
};

void stopObserving(const Object* observer);

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

Tracker& tracker();
void setEffectiveAppearance(const std::string& name);
/// Runs the tasks that wait now.
void drain();

} // namespace plain
