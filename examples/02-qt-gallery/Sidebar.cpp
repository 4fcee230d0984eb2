// SPDX-License-Identifier: Apache-2.0
#include "Sidebar.h"

#include "Words.h"

#include <ZelStyleKit/ZelQtPalette.h>
#include <ZelStyleKit/ZelQtStyleable.h>

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace gallery {
namespace {

constexpr int margin = 14;

QListWidget* groupList() {
    auto* const list = new QListWidget;
    list->setFrameShape(QFrame::NoFrame);
    list->viewport()->setAutoFillBackground(false);
    list->setSpacing(1);
    list->setProperty("roundSelection", true);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (const GroupName& each : groupNames) {
        auto* const item = new QListWidgetItem(QStringLiteral(" %1  (%2)")
                                                   .arg(QLatin1String(each.name))
                                                   .arg(SwatchGrid::countOf(each.group)),
                                               list);
        item->setSizeHint({0, 30});
    }
    list->setCurrentRow(0);
    return list;
}

} // namespace

Sidebar::Sidebar(std::function<void(Group)> chosen, QWidget* parent) : QWidget(parent) {
    setFixedWidth(228);
    setAutoFillBackground(true);
    zel::ZelQtStyleable::of(*this)->setCustomZelStyleSchemeIdentifier("dark");
    zel::ZelQtPalette::follow(*this);
    setBackgroundRole(QPalette::AlternateBase);

    auto* const list = groupList();
    QObject::connect(list, &QListWidget::currentRowChanged, this,
                     [chosen = std::move(chosen)](int row) {
                         chosen(groupNames[static_cast<std::size_t>(row)].group);
                     });

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(margin, 20, margin, 18);
    column->setSpacing(6);
    column->addWidget(makeTitle(QStringLiteral("ZelStyleKit"), 17, QFont::Bold));
    column->addWidget(makeNote(QStringLiteral("Named colours that follow the desktop"), this));
    column->addSpacing(14);
    column->addWidget(list, 1);
    column->addWidget(makeNote(
        QStringLiteral("This sidebar is pinned to the dark scheme, and so are its tooltips."),
        this));
}

QPoint Sidebar::emptyPoint() const {
    return {margin / 2, height() / 2};
}

} // namespace gallery
