// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelGtkModeMenu.h>

#include <ZelStyleKit/ZelStyleManager.h>
#include <ZelStyleKit/ZelStyleManagerMode.h>

#include <string>
#include <variant>

namespace zel::inline v1 {

struct ZelGtkModeMenu::State {
    std::weak_ptr<ZelStyleManager> manager;
    std::string action; // with its prefix
    GMenu* menu = g_menu_new();
    GSimpleAction* choice =
        g_simple_action_new_stateful(ActionName, G_VARIANT_TYPE_STRING, g_variant_new_string(""));

    State() = default;
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        g_signal_handlers_disconnect_by_data(choice, this); // others may hold it on
        g_object_unref(choice);
        g_object_unref(menu);
    }

    void showModes();
    void showChoice();
    static void chosen(GSimpleAction* action, GVariant* mode, gpointer self) noexcept;
};

void ZelGtkModeMenu::State::showModes() {
    g_menu_remove_all(menu);
    const auto modes = manager.lock();
    if (!modes) {
        return;
    }
    for (const auto& mode : modes->modes()) {
        const auto name = mode->name();
        const auto identifier = mode->identifier();
        GMenuItem* const item = g_menu_item_new(name ? name->c_str() : nullptr, nullptr);
        // Without a target the action doesn't fit the item, which is then shown as disabled.
        g_menu_item_set_action_and_target(item, action.c_str(), identifier ? "s" : nullptr,
                                          identifier ? identifier->c_str() : nullptr);
        g_menu_append_item(menu, item);
        g_object_unref(item);
    }
}

// A stored choice that is no string is nobody's mode.
void ZelGtkModeMenu::State::showChoice() {
    const auto modes = manager.lock();
    const auto stored = modes ? modes->activeModeIdentifier() : NSUserDefaultsValue(std::string());
    const auto* const identifier = std::get_if<std::string>(&stored);
    g_simple_action_set_state(choice, g_variant_new_string(identifier ? identifier->c_str() : ""));
}

void ZelGtkModeMenu::State::chosen(GSimpleAction* /*action*/, GVariant* mode,
                                   gpointer self) noexcept {
    auto& state = *static_cast<State*>(self);
    if (const auto modes = state.manager.lock()) {
        modes->setActiveModeIdentifier(g_variant_get_string(mode, nullptr));
        state.showChoice();
    }
}

ZelGtkModeMenu::ZelGtkModeMenu(const std::shared_ptr<ZelStyleManager>& manager, const char* prefix)
    : state_(std::make_unique<State>()) {
    state_->manager = manager;
    state_->action = std::string(prefix) + "." + ActionName;
    g_signal_connect(state_->choice, "change-state", G_CALLBACK(State::chosen), state_.get());
    refresh();
}

ZelGtkModeMenu::~ZelGtkModeMenu() = default;

GMenuModel* ZelGtkModeMenu::menu() const noexcept {
    return G_MENU_MODEL(state_->menu);
}

GAction* ZelGtkModeMenu::action() const noexcept {
    return G_ACTION(state_->choice);
}

void ZelGtkModeMenu::refresh() {
    state_->showModes();
    state_->showChoice();
}

} // namespace zel::inline v1
