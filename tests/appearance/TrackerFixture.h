// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Styling.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zeltest {

/// Writes down each announcement of "currentAppearanceType" with the type at that moment.
class TypeWitness : public zel::NSObject {
public:
    std::vector<std::string> told;
    std::function<void()> then;

    void observe(const std::shared_ptr<zel::ZelStyleSystemAppearance>& tracker) {
        tracker->addObserver(shared_from_this(), "currentAppearanceType",
                             zel::NSKeyValueObservingOptions::Prior, this);
    }
    void observeValueForKeyPath(std::string_view /*keyPath*/, NSObject& ofObject,
                                const zel::NSKeyValueChange& change,
                                const void* /*context*/) override {
        const auto& tracker = dynamic_cast<const zel::ZelStyleSystemAppearance&>(ofObject);
        told.push_back((change.isPrior ? "will from " : "did to ") +
                       std::to_string(tracker.currentAppearanceType()));
        if (then) {
            then();
        }
    }
};

/// Trackers of the test's own beside the shared one, and the notifications that come from them.
class TrackerTests : public StylingTests {
protected:
    TrackerTests() {
        zel::NSNotificationCenter::defaultCenter().addObserver(
            listener_,
            [this](const zel::NSNotification& each) {
                const auto shared = zel::ZelStyleSystemAppearance::sharedSystemAppearance();
                if (each.object != shared) {
                    senders.push_back(each.object);
                    typesRead.push_back(
                        std::static_pointer_cast<zel::ZelStyleSystemAppearance>(each.object)
                            ->currentAppearanceType());
                }
            },
            "ZelStyleSystemAppearanceChanged", nullptr);
    }

    static std::shared_ptr<zel::ZelStyleSystemAppearance> makeTracker() {
        auto tracker = zel::alloc<zel::ZelStyleSystemAppearance>();
        tracker->init();
        return tracker;
    }
    static void drain() { zel::NSMainQueue::mainQueue().drain(); }

    std::vector<std::shared_ptr<zel::NSObject>> senders; // of each notification
    std::vector<std::uint64_t> typesRead;                // by a receiver of each notification

private:
    const std::shared_ptr<zel::NSObject> listener_ = makePlain();
};

} // namespace zeltest
