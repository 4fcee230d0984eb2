// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/watch/DeliveryPrinter.h"

#include "tools/zelstyle/terminal/ColorText.h"
#include "tools/zelstyle/terminal/Output.h"
#include "tools/zelstyle/watch/ThemedWindow.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleScheme.h>

#include <nlohmann/json.hpp>

namespace zel::tool {
namespace {

using nlohmann::ordered_json;

std::string eventName(ZelStyleChangeEvent event) {
    switch (event) {
    case ZelStyleChangeEventInitial:
        return "initial";
    case ZelStyleChangeEventChanged:
        return "changed";
    }
    return "event " + std::to_string(static_cast<std::uint64_t>(event));
}

std::optional<std::string> schemeOf(const std::shared_ptr<ZelStyle>& style) {
    const auto scheme = style ? style->scheme() : nullptr;
    return scheme ? scheme->identifier() : std::nullopt;
}

std::optional<ZelRGBA> colorOf(const std::shared_ptr<ZelStyle>& style,
                               ZelStyleAttribute attribute) {
    const auto value =
        style ? style->effectiveValueForAttribute(ZelStyleAttributeKeyOf(attribute)) : std::nullopt;
    const NSColor* color = value ? value->color() : nullptr;
    return color ? color->sRGBComponents() : std::nullopt;
}

std::string textOf(const Delivery& delivery, bool withColors) {
    const auto identifier = delivery.style ? delivery.style->identifier() : std::nullopt;
    std::string line = padded(delivery.owner, 12) + padded(eventName(delivery.event), 9) +
                       padded(identifier.value_or("-"), 6) +
                       padded(schemeOf(delivery.style).value_or("-"), 6);
    const ZelRGBA background =
        colorOf(delivery.style, ZelStyleAttribute::BackgroundColor).value_or(ZelRGBA{});
    for (const UsedColor& used : delivery.colors) {
        const auto color = colorOf(delivery.style, used.attribute);
        line += ' ';
        if (withColors && color) {
            line += swatchOf(*color, background) + ' ';
        }
        line += std::string(used.use) + ' ' + padded(color ? shortHexOf(*color) : "-", 10);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

ordered_json orNull(const std::optional<std::string>& text) {
    return text ? ordered_json(*text) : ordered_json(nullptr);
}

std::string jsonOf(const Delivery& delivery) {
    ordered_json colors = ordered_json::object();
    for (const UsedColor& used : delivery.colors) {
        const auto color = colorOf(delivery.style, used.attribute);
        ordered_json value;
        if (color) {
            value = {{"hex", hexOf(*color)},
                     {"srgb", {color->red, color->green, color->blue, color->alpha}}};
        }
        colors[std::string(ZelStyleAttributeKeyOf(used.attribute))] = std::move(value);
    }
    const ordered_json line{
        {"owner", delivery.owner},
        {"event", static_cast<std::uint64_t>(delivery.event)},
        {"eventName", eventName(delivery.event)},
        {"style", orNull(delivery.style ? delivery.style->identifier() : std::nullopt)},
        {"scheme", orNull(schemeOf(delivery.style))},
        {"colours", std::move(colors)}};
    return line.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

} // namespace

void printDelivery(const Delivery& delivery, DeliveryFormat format, Output& output) {
    output.write((format == DeliveryFormat::Json
                      ? jsonOf(delivery)
                      : textOf(delivery, format == DeliveryFormat::Colored)) +
                 '\n');
}

} // namespace zel::tool
