// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/ZelStyleable.h>
#include <ZelStyleKit/ZelStyleableNode.h>

#include <gtk/gtk.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace zel::inline v1 {

class DisplayColors;
class StyleSheet;
class ZelGtkStyleable;

/// Sees to it that one widget has the named colours of the style that applies to it. Where that is
/// the main style it has them from its display, and nothing is done. Where it is another, the
/// widget is given that style's sheet, and so are the widgets below it, those that come later
/// included: GTK hands a widget's sheets on to none but its own CSS nodes. A listener of its own,
/// below the widget's companion, since of the companion's own handlers only the first one hears of
/// another style. Owns: the observation of the widget's children. Refers to: the companion, whose
/// member it is, and the display's colours, weakly. Threads: the main thread. Failure: none.
class WidgetColors final : public NSObject, public ZelStyleable {
public:
    /// Begins to watch a companion that isn't watched; nothing where the widget's display isn't
    /// given named colours.
    static void watch(ZelGtkStyleable& companion);

    ~WidgetColors() override;

    /// Brings the widget's sheet up to date.
    void refresh();
    /// Takes the sheet away and stops watching; the widget still lives.
    void stop();

    [[nodiscard]] const ZelStyleable* asZelStyleable() const noexcept override { return this; }
    [[nodiscard]] const ZelStyleableNode* zelStyleableNode() const noexcept override {
        return &node_;
    }
    [[nodiscard]] std::optional<std::string> domainIdentifierOfZelStyleable() const override;
    [[nodiscard]] std::shared_ptr<NSObject> parentZelStyleable() const override;

private:
    friend class DisplayColors;

    void start(ZelGtkStyleable& companion, const std::shared_ptr<DisplayColors>& display);
    void show(const std::shared_ptr<ZelStyle>& style);
    void wear(const std::shared_ptr<StyleSheet>& sheet);
    void watchChildren();
    void leaveChildren() noexcept;
    void leaveDisplay() noexcept;
    static void childrenChanged(GListModel* children, guint position, guint removed, guint added,
                                gpointer self) noexcept;

    ZelStyleableNode node_{*this};
    std::weak_ptr<ZelGtkStyleable> companion_;
    std::weak_ptr<DisplayColors> display_;
    std::size_t index_ = 0;             // in the display's list
    std::shared_ptr<StyleSheet> sheet_; // the one that the widget was given
    GListModel* children_ = nullptr;    // while it has one
};

} // namespace zel::inline v1
