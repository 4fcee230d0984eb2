// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQtModeActions.h>

#include <ZelStyleKit/ZelStyleManager.h>
#include <ZelStyleKit/ZelStyleManagerMode.h>

#include <QAction>
#include <QMenu>

#include <algorithm>

namespace zel::inline v1 {
namespace {

/// An action's data; invalid for a mode without an identifier.
QVariant identifierOf(const std::shared_ptr<ZelStyleManagerMode>& mode) {
    const auto identifier = mode->identifier();
    return identifier ? QString::fromStdString(*identifier) : QVariant();
}

/// A name may hold an ampersand, which in an action's text marks a letter.
QString textOf(const std::shared_ptr<ZelStyleManagerMode>& mode) {
    return QString::fromStdString(mode->name().value_or(""))
        .replace(QLatin1String("&"), QLatin1String("&&"));
}

} // namespace

ZelQtModeActions::ZelQtModeActions(QObject* parent)
    : ZelQtModeActions(parent, ZelStyleManager::sharedStyleManager()) {}

ZelQtModeActions::ZelQtModeActions(QObject* parent, std::shared_ptr<ZelStyleManager> manager)
    : QActionGroup(parent), manager_(std::move(manager)) {
    connect(this, &QActionGroup::triggered, this, [this](const QAction* action) {
        manager_->setActiveModeIdentifier(action->data().toString().toStdString());
    });
    refresh();
}

ZelQtModeActions::~ZelQtModeActions() = default;

void ZelQtModeActions::addTo(QMenu& menu) {
    const auto show = [this, &menu] {
        refresh();
        for (QAction* const action : actions()) {
            if (!menu.actions().contains(action)) {
                menu.addAction(action);
            }
        }
    };
    show();
    connect(&menu, &QMenu::aboutToShow, this, show);
}

// A choice that no mode has means the first one, the lowest in rank.
void ZelQtModeActions::refresh() {
    if (!showsModes()) {
        showModes();
    }
    const QList<QAction*> shown = actions();
    const NSUserDefaultsValue chosen = manager_->activeModeIdentifier();
    const auto* const text = std::get_if<std::string>(&chosen);
    const auto found = std::ranges::find_if(shown, [text](const QAction* action) {
        return text && action->data() == QString::fromStdString(*text);
    });
    if (found != shown.end()) {
        (*found)->setChecked(true);
    } else if (!shown.isEmpty()) {
        shown.front()->setChecked(true);
    }
}

bool ZelQtModeActions::showsModes() const {
    return std::ranges::equal(
        actions(), manager_->modes(), [](const QAction* action, const auto& mode) {
            return action->data() == identifierOf(mode) && action->text() == textOf(mode);
        });
}

void ZelQtModeActions::showModes() {
    qDeleteAll(actions());
    for (const auto& mode : manager_->modes()) {
        QAction* const action = addAction(textOf(mode));
        action->setData(identifierOf(mode));
        action->setCheckable(true);
        action->setEnabled(action->data().isValid());
    }
}

} // namespace zel::inline v1
