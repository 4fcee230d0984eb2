// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/watch/ThemedWindow.h"

#include <ZelStyleKit/NSView.h>
#include <ZelStyleKit/NSViewController.h>
#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleScheme.h>

#include <array>
#include <optional>

namespace zel::tool {
namespace {

using Attribute = ZelStyleAttribute;
using UsedColors = std::array<UsedColor, 3>;

constexpr UsedColors windowColors{{{"background", Attribute::BackgroundColor},
                                   {"text", Attribute::LabelColor},
                                   {"accent", Attribute::AccentColor}}};
constexpr UsedColors toolbarColors{{{"background", Attribute::ToolbarBackgroundColor},
                                    {"text", Attribute::ToolbarTextColor},
                                    {"tint", Attribute::ToolbarTintColor}}};
constexpr UsedColors sidebarColors{{{"background", Attribute::OverlayTableBackgroundColor},
                                    {"text", Attribute::TableTextColor},
                                    {"accent", Attribute::AccentColor}}};
constexpr UsedColors cardColors{{{"background", Attribute::BackgroundColor},
                                 {"text", Attribute::LabelColor},
                                 {"border", Attribute::SeparatorColor}}};
constexpr UsedColors badgeColors{{{"background", Attribute::AccentColorSecondary},
                                  {"text", Attribute::AccentColor},
                                  {"border", Attribute::SeparatorColor}}};

/// Cards stand out from what they lie on, whatever that is: their values are computed from the main
/// style's, again whenever that is updated.
void addCardStyle(ZelStyleDomain& domain, std::string_view schemeIdentifier) {
    const auto scheme = domain.schemeForIdentifier(schemeIdentifier);
    const auto main = scheme->styleForIdentifier(ZelStyleIdentifierMain);
    if (!main) {
        return;
    }
    main->inheritedStyleWithChanges(
        [](const std::shared_ptr<ZelStyle>& parent, const std::shared_ptr<ZelStyle>& child) {
            if (parent) {
                child->setBackgroundColor(parent->backgroundColorSecondary());
                child->setSeparatorColor(parent->accentColorSecondary());
            }
        },
        cardStyleIdentifier, scheme);
}

} // namespace

/// Listens as an object, not by a handler; no part of the tree, so that it gets the main style.
class ThemedWindow::StatusIcon : public NSObject {
public:
    void styleChangedWithEvent(const std::shared_ptr<ZelStyle>& style,
                               ZelStyleChangeEvent event) override {
        if (listener) {
            (*listener)({"statusIcon", style, event, windowColors});
        }
    }

    const Listener* listener = nullptr; // the window's, which owns this object
};

/// A part of the window and where it belongs. A part "of" a controller is its view.
struct ThemedWindow::PartRow {
    std::string_view name;
    std::string_view parent; ///< a view's name; empty: none
    bool isController;
    std::string_view view; ///< what a controller controls
    std::optional<std::string_view> styleIdentifier;
    std::optional<std::string_view> schemeIdentifier;
    std::span<const UsedColor> colors;
};

// Each part behind those that it names.
const std::span<const ThemedWindow::PartRow> ThemedWindow::partRows = [] {
    static const PartRow rows[] = {
        {"window", "", false, "", {}, {}, windowColors},
        {"toolbar", "window", false, "", {}, {}, toolbarColors},
        {"content", "window", false, "", {}, {}, windowColors},
        {"sidebar", "content", false, "", {}, "dark", sidebarColors},
        {"card", "content", false, "", cardStyleIdentifier, {}, cardColors},
        {"badge", "card", false, "", {}, {}, badgeColors},
        {"controller", "", true, "content", {}, {}, windowColors},
    };
    return std::span<const PartRow>(rows);
}();

ThemedWindow::ThemedWindow(Listener listener) : listener_(std::move(listener)) {
    const auto domain = ZelStyleDomain::defaultDomain();
    addCardStyle(*domain, ZelStyleSchemeIdentifierLight);
    addCardStyle(*domain, ZelStyleSchemeIdentifierDark);
    for (const PartRow& row : partRows) {
        build(row);
    }
    for (const PartRow& row : partRows) {
        listen(row);
    }
    statusIcon_ = alloc<StatusIcon>();
    statusIcon_->init();
    statusIcon_->listener = &listener_;
    domain->registerChangeHandler(statusIcon_);
}

ThemedWindow::~ThemedWindow() = default;

void ThemedWindow::build(const PartRow& row) {
    std::shared_ptr<NSObject> part;
    if (row.isController) {
        const auto controller = alloc<NSViewController>();
        controller->init();
        controller->setView(std::dynamic_pointer_cast<NSView>(partNamed(row.view)));
        part = controller;
    } else {
        const auto view = alloc<NSView>();
        view->init();
        if (const auto parent = std::dynamic_pointer_cast<NSView>(partNamed(row.parent))) {
            parent->addSubview(view);
        }
        part = view;
    }
    part->setCustomZelStyleIdentifier(row.styleIdentifier);
    part->setCustomZelStyleSchemeIdentifier(row.schemeIdentifier);
    parts_.emplace(row.name, part);
}

// The handler goes with its part, and the part with the window, so that it may refer to both rows
// and window.
void ThemedWindow::listen(const PartRow& row) {
    partNamed(row.name)->registerStyleableChangeHandler(
        [this, &row](const std::shared_ptr<NSObject>& /*owner*/,
                     const std::shared_ptr<ZelStyle>& style, ZelStyleChangeEvent event) {
            listener_({row.name, style, event, row.colors});
        });
}

std::shared_ptr<NSObject> ThemedWindow::partNamed(std::string_view name) const {
    const auto found = parts_.find(name);
    return found == parts_.end() ? nullptr : found->second;
}

std::string ThemedWindow::partNames() {
    std::string names;
    for (const PartRow& row : partRows) {
        names += names.empty() ? "" : ", ";
        names += row.name;
    }
    return names;
}

} // namespace zel::tool
