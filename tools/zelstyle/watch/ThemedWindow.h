// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/ZelStyleAttributes.h>

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace zel::tool {

/// A colour that a part of the window uses, and what for.
struct UsedColor {
    std::string_view use;
    ZelStyleAttribute attribute;
};

/// One call of a change handler, for as long as that call lasts.
struct Delivery {
    std::string_view owner;
    const std::shared_ptr<ZelStyle>& style; ///< nil where no style applies
    ZelStyleChangeEvent event;
    std::span<const UsedColor> colors;
};

/// A window as a host has it: a small tree of views, the controller of one of them, and an object
/// outside the tree, each listening for its style; one part pinned to the dark scheme, one with a
/// style derived from the main one.
/// Owns: the objects; their handlers go with them.
/// Threads: the main thread, on which the listener is called, inside the library's deliveries.
/// Failure: what the listener raises passes through.
class ThemedWindow {
public:
    using Listener = std::function<void(const Delivery& delivery)>;

    /// Makes the objects and registers them: the listener hears of each at once. The default domain
    /// must have been set up.
    explicit ThemedWindow(Listener listener);
    ~ThemedWindow();
    ThemedWindow(const ThemedWindow&) = delete;
    ThemedWindow& operator=(const ThemedWindow&) = delete;

    /// A part that identifiers can be set on; nil where no part has the name.
    [[nodiscard]] std::shared_ptr<NSObject> partNamed(std::string_view name) const;
    /// The names of those parts: "a, b, c".
    [[nodiscard]] static std::string partNames();

private:
    class StatusIcon;
    struct PartRow;
    static const std::span<const PartRow> partRows;

    void build(const PartRow& row);
    void listen(const PartRow& row);

    const Listener listener_;
    std::map<std::string_view, std::shared_ptr<NSObject>> parts_;
    std::shared_ptr<StatusIcon> statusIcon_;
};

/// The identifier of the derived style, which the light and the dark scheme both have.
inline constexpr std::string_view cardStyleIdentifier = "card";

} // namespace zel::tool
