// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleManager.h>

#include "platform/locks/Guarded.h"

#include <ZelStyleKit/NSBundle.h>
#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleManagerMode.h>

#include <algorithm>
#include <array>

namespace zel {
inline namespace v1 {
namespace {

constexpr std::string_view activeModeKey = "style-manager-active-mode";

/// A mode that every application has, in the order in which they are added.
struct StandardMode {
    const std::string_view& identifier;
    std::uint64_t rank;
    std::string_view nameKey;
};

constexpr std::array standardModes{
    StandardMode{ZelStyleManagerModeIdentifierLight, 0, "Light"},
    StandardMode{ZelStyleManagerModeIdentifierDark, 10, "Dark"},
    StandardMode{ZelStyleManagerModeIdentifierFollowSystem, 100, "Follow system appearance"},
};

bool standsBefore(const std::shared_ptr<ZelStyleManagerMode>& a,
                  const std::shared_ptr<ZelStyleManagerMode>& b) {
    const std::uint64_t rankA = a->rank();
    const std::uint64_t rankB = b->rank();
    return rankA != rankB ? rankA < rankB
                          : localizedCaseInsensitiveCompare(a->name(), b->name()) < 0;
}

} // namespace

struct ZelStyleManager::State {
    mutable RecursiveLock lock{LockRank::ModeList};
    Guarded<Modes> guarded; // in the order of standsBefore

    [[nodiscard]] Modes& modes() noexcept { return guarded.with(lock); }
};

ZelStyleManager::ZelStyleManager() : state_(std::make_unique<State>()) {}

ZelStyleManager::~ZelStyleManager() = default;

const std::shared_ptr<ZelStyleManager>& ZelStyleManager::sharedStyleManager() {
    static const auto* const shared = [] { // never destroyed: it lives for the process
        auto manager = alloc<ZelStyleManager>();
        manager->init();
        return new std::shared_ptr<ZelStyleManager>(std::move(manager));
    }();
    return *shared;
}

void ZelStyleManager::setup() {
    ZelStyleDomain::setupStyles();
    for (const StandardMode& each : standardModes) {
        sharedStyleManager()->addMode(alloc<ZelStyleManagerMode>()->initWithIdentifier(
            each.identifier, each.rank, NSBundle::localizedStringForKey(each.nameKey)));
    }
}

const ZelStyleManager::Modes& ZelStyleManager::modes() const noexcept {
    return state_->guarded.withoutLock();
}

void ZelStyleManager::addMode(const std::shared_ptr<ZelStyleManagerMode>& mode) {
    if (!mode) {
        throw ZelInvalidArgument("a mode must not be nil");
    }
    {
        const RecursiveGuard guard(state_->lock);
        mode->setManager(std::static_pointer_cast<ZelStyleManager>(shared_from_this()));
        state_->modes().push_back(mode);
        std::ranges::stable_sort(state_->modes(), standsBefore);
    }
    _updateActiveMode();
}

void ZelStyleManager::removeMode(const std::shared_ptr<ZelStyleManagerMode>& mode) {
    const auto kept = mode; // the list may be the only one to hold it
    if (kept) {
        const RecursiveGuard guard(state_->lock);
        if (kept->active()) {
            kept->setActive(false);
        }
        kept->setManager(nullptr);
        std::erase(state_->modes(), kept);
    }
    _updateActiveMode();
}

NSUserDefaultsValue ZelStyleManager::activeModeIdentifier() const {
    auto stored = NSUserDefaults::standardUserDefaults().objectForKey(activeModeKey);
    return stored ? *std::move(stored) : std::string(ZelStyleManagerModeIdentifierFollowSystem);
}

bool ZelStyleManager::setActiveModeIdentifier(std::optional<std::string_view> identifier) {
    const auto value =
        identifier ? std::optional<NSUserDefaultsValue>(std::string(*identifier)) : std::nullopt;
    const bool durable = NSUserDefaults::standardUserDefaults().setObject(value, activeModeKey);
    _updateActiveMode();
    return durable;
}

std::shared_ptr<ZelStyleManagerMode> ZelStyleManager::activeMode() const {
    const RecursiveGuard guard(state_->lock);
    const auto found = std::ranges::find_if(
        state_->modes(), &ZelStyleManagerMode::active,
        [](const auto& mode) -> auto& { return *mode; });
    return found == state_->modes().end() ? nullptr : *found;
}

std::shared_ptr<ZelStyleManagerMode> ZelStyleManager::_shouldBeActiveMode() const {
    const RecursiveGuard guard(state_->lock); // a store, read in it, uses nothing that locks
    const auto modes = state_->modes();       // one that changes the list all the same does no harm
    for (const auto& mode : modes) {
        if (activeModeIdentifier() == NSUserDefaultsValue(mode->identifier())) {
            return mode;
        }
    }
    return state_->modes().empty() ? nullptr : state_->modes().front();
}

// No mode ever says that it is active, so the chosen one is applied afresh each time.
void ZelStyleManager::_updateActiveMode() {
    const auto chosen = _shouldBeActiveMode();
    if (chosen && chosen->active()) {
        return;
    }
    if (const auto former = activeMode()) {
        former->setActive(false);
    }
    if (chosen) {
        chosen->setActive(true);
    }
}

} // namespace v1
} // namespace zel
