// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>
#include <ZelStyleKit/ZelStyleAttributes.h>

#include <QColor>
#include <QObject>
#include <QString>
#include <QtQml/qqml.h>

#include <cstdint>
#include <memory>

class QQuickItem;

namespace zel::inline v1 {

class StyleListener;
class ZelQuickStyleable;
class ZelStyle;

/// What QML calls `Zel`, attached to an item, a window or a popup: the attributes of the style that
/// applies there, `color: Zel.backgroundColor`, and which scheme and style it and all below it are
/// pinned to, `Zel.scheme: "dark"`, `Zel.style: "sidebar"`; `undefined` unpins.
/// Owns: its listening. Refers to: the object it is attached to, which owns it.
/// Threads: the main thread; a style updated on another is taken over on the main queue. Failure:
/// an attribute without a value is an invalid colour, a number 0; attached to anything else, it has
/// the values of the main style.
class ZEL_EXPORT ZelQuickAttached final : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    QML_ATTACHED(ZelQuickAttached)

    Q_PROPERTY(QString scheme READ scheme WRITE setScheme RESET resetScheme NOTIFY schemeChanged)
    Q_PROPERTY(QString style READ style WRITE setStyle RESET resetStyle NOTIFY styleChanged)
    /// Whether the style that applies is a dark one.
    Q_PROPERTY(bool dark READ isDark NOTIFY valuesChanged)

    // One property for each predefined attribute; all of them change together.
#define ZEL_QUICK_Color QColor
#define ZEL_QUICK_Number double
#define ZEL_QUICK_PROPERTY(key, Key, Kind, group)                                                  \
    Q_PROPERTY(ZEL_QUICK_##Kind key READ key NOTIFY valuesChanged)
    ZEL_STYLE_ATTRIBUTES(ZEL_QUICK_PROPERTY)
#undef ZEL_QUICK_PROPERTY

public:
    explicit ZelQuickAttached(QObject* attachee);
    ~ZelQuickAttached() override;
    ZelQuickAttached(const ZelQuickAttached&) = delete;
    ZelQuickAttached& operator=(const ZelQuickAttached&) = delete;

    /// Called by the engine; `qmlAttachedPropertiesObject<ZelQuickAttached>(item)` answers the
    /// object of an item in C++.
    static ZelQuickAttached* qmlAttachedProperties(QObject* attachee);

    [[nodiscard]] QString scheme() const;
    void setScheme(const QString& identifier);
    void resetScheme();
    [[nodiscard]] QString style() const;
    void setStyle(const QString& identifier);
    void resetStyle();
    [[nodiscard]] bool isDark() const;

#define ZEL_QUICK_READ(key, Key, Kind, group) [[nodiscard]] ZEL_QUICK_##Kind key() const;
    ZEL_STYLE_ATTRIBUTES(ZEL_QUICK_READ)
#undef ZEL_QUICK_READ
#undef ZEL_QUICK_Color
#undef ZEL_QUICK_Number

Q_SIGNALS:
    void schemeChanged();
    void styleChanged();
    /// Another style applies, or the same one has new values.
    void valuesChanged();

private:
    const std::shared_ptr<ZelQuickStyleable> styleable_; // none where there is no item
    std::shared_ptr<ZelStyle> current_;
    const std::shared_ptr<StyleListener> listener_;
};

/// Makes `import ZelStyleKit` known to QML, in every engine of the process. Before the first QML
/// file is loaded, on the main thread; again has no effect.
ZEL_EXPORT void ZelQuickRegisterTypes();

} // namespace zel::inline v1
