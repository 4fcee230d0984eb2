// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleManager.h>

#include "appearance/ModeState.h"

#include <ZelStyleKit/NSBundle.h>
#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleManagerMode.h>

#include <algorithm>
#include <array>

namespace zel::inline v1 {
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

/// A mode and what it sorts by, read once: another thread may change it during the sorting.
struct RankedMode {
    std::shared_ptr<ZelStyleManagerMode> mode;
    std::uint64_t rank = mode->rank();
    std::optional<std::string> name = mode->name();
};

bool isBefore(const RankedMode& a, const RankedMode& b) {
    if (a.rank != b.rank) {
        return a.rank < b.rank;
    }
    return a.name && b.name ? localizedCaseInsensitiveCompare(*a.name, *b.name) < 0
                            : a.name < b.name; // none is before any
}

/// What compares equal stays in its order.
ZelStyleManager::Modes sorted(const ZelStyleManager::Modes& modes) {
    std::vector<RankedMode> ranked;
    for (const auto& mode : modes) {
        RankedMode next{mode};
        // Inserted one by one: any order is safe to ask here, also one that contradicts itself.
        ranked.insert(std::ranges::upper_bound(ranked, next, isBefore), std::move(next));
    }
    ZelStyleManager::Modes result;
    std::ranges::transform(ranked, std::back_inserter(result), &RankedMode::mode);
    return result;
}

} // namespace

struct ZelStyleManager::State {
    Modes modes; ///< guarded by `modesLock`, but for `ZelStyleManager::modes`

    [[nodiscard]] Modes copy() const {
        const PrivateGuard guard(modesLock);
        return modes;
    }

    /// Makes the list what `change` makes of a copy, and sets a mode's manager in the same moment.
    /// Changes again where the list has become another one meanwhile.
    void update(ZelStyleManagerMode& mode, const std::shared_ptr<ZelStyleManager>& manager,
                const auto& change) {
        for (;;) {
            const Modes former = copy();
            Modes changed = former;
            change(changed);
            std::weak_ptr<ZelStyleManager> managing = manager;
            const PrivateGuard guard(modesLock); // ends before the lists above, and their modes
            if (modes == former) {
                mode.state_->manager.swap(managing);
                modes.swap(changed);
                return;
            }
        }
    }
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
    return state_->modes;
}

void ZelStyleManager::addMode(const std::shared_ptr<ZelStyleManagerMode>& mode) {
    if (!mode) {
        throw ZelInvalidArgument("a mode must not be nil");
    }
    const auto added = mode; // it may be a reference into the list
    state_->update(*added, std::static_pointer_cast<ZelStyleManager>(shared_from_this()),
                   [&](Modes& modes) {
                       modes.push_back(added);
                       modes = sorted(modes);
                   });
    _updateActiveMode();
}

void ZelStyleManager::removeMode(const std::shared_ptr<ZelStyleManagerMode>& mode) {
    if (const auto removed = mode) { // it may be a reference into the list
        if (removed->active()) {
            removed->setActive(false);
        }
        state_->update(*removed, nullptr, [&](Modes& modes) { std::erase(modes, removed); });
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
    const Modes modes = state_->copy();
    const auto found = std::ranges::find_if(modes, [](const auto& mode) { return mode->active(); });
    return found == modes.end() ? nullptr : *found;
}

std::shared_ptr<ZelStyleManagerMode> ZelStyleManager::_shouldBeActiveMode() const {
    for (const auto& mode : state_->copy()) {
        const NSUserDefaultsValue stored = activeModeIdentifier();
        const auto* const identifier = std::get_if<std::string>(&stored);
        if (identifier && mode->identifier() == *identifier) {
            return mode;
        }
    }
    const Modes modes = state_->copy(); // a store may have changed the list
    return modes.empty() ? nullptr : modes.front();
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

} // namespace zel::inline v1
