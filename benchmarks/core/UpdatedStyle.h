// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/TreeShape.h"

#include <ZelStyleKit/ZelStyleKit.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace zel::inline v1 {

/// A style with `size` child styles that follow it and `size` listeners that have it.
/// Owns: the children, the listeners and their root, whose custom identifier names the style; the
/// style itself stands in the light scheme until the end. Threads: the main thread. The light
/// scheme must be current.
class UpdatedStyle {
public:
    explicit UpdatedStyle(std::size_t size) : size_(size) {
        const auto light = ZelStyleDomain::defaultDomain()->lightScheme();
        ZelStyleDomain::defaultDomain()->setCurrentScheme(light);
        style_ =
            light->styleForIdentifier("main")->inheritedStyleWithChanges(nullptr, "updated", light);
        addChildren(light);
        addListeners();
        childCalls_ = 0;
        listenerCalls_ = 0;
    }
    ~UpdatedStyle() {
        const auto light = ZelStyleDomain::defaultDomain()->lightScheme();
        for (const auto& child : children_) {
            light->removeStyle(child);
        }
        light->removeStyle(style_);
    }
    UpdatedStyle(const UpdatedStyle&) = delete;
    UpdatedStyle& operator=(const UpdatedStyle&) = delete;

    [[nodiscard]] std::size_t size() const noexcept { return size_; }

    void update() {
        style_->updateStyleWithChanges([this](const std::shared_ptr<ZelStyle>& style) {
            level_ = 1 - level_;
            style->setBackgroundColor(NSColor::colorWithSRGBRed(level_, level_, level_, 1));
            return true;
        });
    }

    /// Calls since the last update of children that compute their colour.
    [[nodiscard]] std::size_t takeChildCalls() noexcept { return take(childCalls_); }
    /// Calls since the last update of listeners.
    [[nodiscard]] std::size_t takeListenerCalls() noexcept { return take(listenerCalls_); }

private:
    static std::size_t take(std::size_t& calls) noexcept {
        const std::size_t taken = calls;
        calls = 0;
        return taken;
    }

    void addChildren(const std::shared_ptr<ZelStyleScheme>& scheme) {
        for (std::size_t i = 0; i < size_; ++i) {
            children_.push_back(style_->inheritedStyleWithChanges(
                [this](const auto& parent, const auto& child) {
                    child->setBackgroundColorSecondary(parent->backgroundColor());
                    ++childCalls_;
                },
                "child" + std::to_string(i), scheme));
        }
    }

    void addListeners() {
        views_.push_back(alloc<NSView>());
        views_[0]->setCustomZelStyleIdentifier("updated");
        for (const std::size_t parent : parentsOfTree(size_)) {
            views_.push_back(alloc<NSView>());
            views_[parent]->addSubview(views_.back());
        }
        std::vector<std::shared_ptr<NSView>> listeners(views_.begin() + 1, views_.end());
        shuffleListeners(listeners);
        for (const auto& view : listeners) {
            view->registerStyleableChangeHandler(
                [this](const auto&, const auto&, ZelStyleChangeEvent) { ++listenerCalls_; });
        }
    }

    std::size_t size_;
    std::size_t childCalls_ = 0;
    std::size_t listenerCalls_ = 0;
    double level_ = 0;
    std::shared_ptr<ZelStyle> style_;
    std::vector<std::shared_ptr<ZelStyle>> children_;
    std::vector<std::shared_ptr<NSView>> views_;
};

} // namespace zel::inline v1
