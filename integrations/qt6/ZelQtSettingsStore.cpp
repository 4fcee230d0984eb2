// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQtSettingsStore.h>

#include <QSettings>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace zel::inline v1 {
namespace {

QString textOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QVariant variantOf(const NSUserDefaultsValue& value) {
    if (const auto* const text = std::get_if<std::string>(&value)) {
        return textOf(*text);
    }
    const NSNumber number = std::get<NSNumber>(value);
    switch (number.kind()) {
    case NSNumber::Kind::Boolean:
        return QStringList{QStringLiteral("bool"), QString::number(number.unsignedLongValue())};
    case NSNumber::Kind::Long:
        return QStringList{QStringLiteral("long"), QString::number(number.longValue())};
    case NSNumber::Kind::Double:
        return QStringList{QStringLiteral("double"),
                           QString::number(number.doubleValue(), 'g', 17)};
    default:
        return QStringList{QStringLiteral("unsigned"), QString::number(number.unsignedLongValue())};
    }
}

std::optional<NSNumber> numberOf(const QString& kind, const QString& digits) {
    bool good = false;
    std::optional<NSNumber> number;
    if (kind == QLatin1String("bool")) {
        number = NSNumber::numberWithBool(digits.toULongLong(&good) != 0);
    } else if (kind == QLatin1String("long")) {
        number = NSNumber::numberWithLong(digits.toLongLong(&good));
    } else if (kind == QLatin1String("double")) {
        number = NSNumber::numberWithDouble(digits.toDouble(&good));
    } else if (kind == QLatin1String("unsigned")) {
        number = NSNumber::numberWithUnsignedLong(digits.toULongLong(&good));
    }
    return good ? number : std::nullopt;
}

} // namespace

ZelQtSettingsStore::ZelQtSettingsStore() : settings_(std::make_unique<QSettings>()) {}

ZelQtSettingsStore::ZelQtSettingsStore(std::unique_ptr<QSettings> settings)
    : settings_(std::move(settings)) {}

ZelQtSettingsStore::~ZelQtSettingsStore() = default;

std::optional<NSUserDefaultsValue> ZelQtSettingsStore::objectForKey(std::string_view key) {
    const std::scoped_lock guard(mutex_);
    settings_->sync(); // another process may have written
    const QVariant value = settings_->value(textOf(key));
    if (!value.isValid()) {
        return std::nullopt;
    }
    if (value.typeId() == QMetaType::QStringList) {
        const QStringList words = value.toStringList();
        const auto number = words.size() == 2 ? numberOf(words[0], words[1]) : std::nullopt;
        return number ? std::optional<NSUserDefaultsValue>(*number) : std::nullopt;
    }
    return value.toString().toStdString();
}

bool ZelQtSettingsStore::setObject(const std::optional<NSUserDefaultsValue>& value,
                                   std::string_view forKey) {
    const std::scoped_lock guard(mutex_);
    if (value) {
        settings_->setValue(textOf(forKey), variantOf(*value));
    } else {
        settings_->remove(textOf(forKey));
    }
    settings_->sync();
    return settings_->status() == QSettings::NoError;
}

} // namespace zel::inline v1
