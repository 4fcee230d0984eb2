// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQuickAttached.h>

#include "QuickItemLink.h"

#include <ZelStyleKit/ZelQtColor.h>
#include <ZelStyleKit/ZelStyle.h>

#include <QQuickItem>
#include <QVariant>

#include <string>

namespace zel::inline v1 {
namespace {

/// The item that an object stands for: itself, or what is around the contents of a window or popup.
QQuickItem* itemOf(QObject* object) {
    if (auto* const item = qobject_cast<QQuickItem*>(object)) {
        return item;
    }
    auto* const contents = object->property("contentItem").value<QQuickItem*>();
    return contents && contents->parentItem() ? contents->parentItem() : contents;
}

QString textOf(const std::optional<std::string>& identifier) {
    return identifier ? QString::fromStdString(*identifier) : QString();
}

QColor valueOf(const std::optional<NSColor>& color) {
    return ZelQColorWithColor(color);
}

double valueOf(const std::optional<NSNumber>& number) {
    return number ? number->doubleValue() : 0;
}

} // namespace

ZelQuickAttached* ZelQuickAttached::qmlAttachedProperties(QObject* attachee) {
    return new ZelQuickAttached(attachee); // the attachee owns it
}

ZelQuickAttached::ZelQuickAttached(QObject* attachee)
    : QObject(attachee), styleable_([attachee]() -> std::shared_ptr<ZelQuickStyleable> {
          QQuickItem* const item = itemOf(attachee);
          return item ? ZelQuickStyleable::of(*item) : nullptr;
      }()),
      listener_(styleable_ ? QuickItemLink::of(*styleable_->item()).makeListener()
                           : std::make_shared<StyleListener>(std::weak_ptr<NSObject>(), nullptr)) {
    listener_->start([this](const auto& newStyle) {
        current_ = newStyle;
        Q_EMIT valuesChanged(); // which nobody hears while the object is being made
    });
}

// What a binding does in an attachee that ends may still call here; the listener holds no more.
ZelQuickAttached::~ZelQuickAttached() {
    listener_->stop();
}

QString ZelQuickAttached::scheme() const {
    return styleable_ ? textOf(styleable_->customZelStyleSchemeIdentifier()) : QString();
}

void ZelQuickAttached::setScheme(const QString& identifier) {
    const std::string text = identifier.toStdString();
    if (styleable_ && styleable_->customZelStyleSchemeIdentifier() != text) {
        styleable_->setCustomZelStyleSchemeIdentifier(text);
        Q_EMIT schemeChanged();
    }
}

void ZelQuickAttached::resetScheme() {
    if (styleable_ && styleable_->customZelStyleSchemeIdentifier()) {
        styleable_->setCustomZelStyleSchemeIdentifier(std::nullopt);
        Q_EMIT schemeChanged();
    }
}

QString ZelQuickAttached::style() const {
    return styleable_ ? textOf(styleable_->customZelStyleIdentifier()) : QString();
}

void ZelQuickAttached::setStyle(const QString& identifier) {
    const std::string text = identifier.toStdString();
    if (styleable_ && styleable_->customZelStyleIdentifier() != text) {
        styleable_->setCustomZelStyleIdentifier(text);
        Q_EMIT styleChanged();
    }
}

void ZelQuickAttached::resetStyle() {
    if (styleable_ && styleable_->customZelStyleIdentifier()) {
        styleable_->setCustomZelStyleIdentifier(std::nullopt);
        Q_EMIT styleChanged();
    }
}

bool ZelQuickAttached::isDark() const {
    return current_ && current_->isDarkStyle();
}

#define ZEL_QUICK_Color QColor
#define ZEL_QUICK_Number double
#define ZEL_QUICK_DEFINE(key, Key, Kind, group)                                                    \
    ZEL_QUICK_##Kind ZelQuickAttached::key() const {                                               \
        return current_ ? valueOf(current_->key()) : ZEL_QUICK_##Kind();                           \
    }
ZEL_STYLE_ATTRIBUTES(ZEL_QUICK_DEFINE)
#undef ZEL_QUICK_DEFINE

void ZelQuickRegisterTypes() {
    static const int registered = qmlRegisterUncreatableType<ZelQuickAttached>(
        "ZelStyleKit", 1, 0, "Zel", QStringLiteral("Zel is attached to items, it can't be made."));
    (void)registered;
}

} // namespace zel::inline v1
