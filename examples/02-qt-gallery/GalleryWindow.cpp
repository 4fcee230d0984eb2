// SPDX-License-Identifier: Apache-2.0
#include "GalleryWindow.h"

#include "Card.h"
#include "ControlsPanel.h"
#include "Sidebar.h"
#include "SwatchGrid.h"
#include "Words.h"

#include <ZelStyleKit/ZelQtModeActions.h>
#include <ZelStyleKit/ZelQtStyleable.h>
#include <ZelStyleKit/ZelStyle.h>

#include <QAction>
#include <QFrame>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace gallery {

namespace {

/// A line one pixel wide, since sidebar and window may be of one colour.
QFrame* makeEdge(QWidget* parent) {
    auto* const line = new QFrame(parent);
    line->setFrameStyle(QFrame::VLine | QFrame::Plain);
    line->setLineWidth(1);
    line->setFixedWidth(1);
    line->setForegroundRole(QPalette::Midlight);
    return line;
}

} // namespace

GalleryWindow::GalleryWindow()
    : grid_(new SwatchGrid(nullptr)),
      sidebar_(new Sidebar([this](Group group) { grid_->emphasize(group); }, this)) {
    setWindowTitle(QStringLiteral("ZelStyleKit Gallery"));
    auto* const attributes =
        new Card(QStringLiteral("55 attributes"),
                 QStringLiteral("Every predefined attribute, as the window's style has it."), this);
    attributes->contents().addWidget(grid_);

    auto* const main = new QVBoxLayout;
    main->setContentsMargins(20, 16, 20, 20);
    main->setSpacing(16);
    main->addLayout(makeHeading());
    main->addLayout(makeCards());
    main->addWidget(attributes, 1);

    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(sidebar_);
    row->addWidget(makeEdge(this));
    row->addLayout(main, 1);
    resize(1280, 880);
}

QLayout* GalleryWindow::makeHeading() {
    auto* const modes = new zel::ZelQtModeActions(this);
    modes_ = new QMenu(this);
    modes->addTo(*modes_);
    auto* const appearance = new QPushButton(QStringLiteral("Appearance"));
    appearance->setMenu(modes_);
    appearance->setMinimumSize(130, 30);

    auto* const row = new QHBoxLayout;
    row->addWidget(makeTitle(QStringLiteral("Gallery"), 18, QFont::Bold));
    row->addStretch(1);
    row->addWidget(appearance);
    return row;
}

QLayout* GalleryWindow::makeCards() {
    auto* const row = new QHBoxLayout;
    row->setSpacing(16);
    row->addWidget(makeControls(this), 5);
    row->addWidget(makeTable(this), 4);
    tinted_ = makeTinted(this);
    row->addWidget(tinted_, 4);
    return row;
}

const std::vector<Swatch*>& GalleryWindow::swatches() const {
    return grid_->swatches();
}

QPoint GalleryWindow::sidebarPoint() const {
    return sidebar_->mapTo(this, sidebar_->emptyPoint());
}

QPoint GalleryWindow::tintedPoint() const {
    return tinted_->mapTo(this, tinted_->emptyPoint());
}

bool GalleryWindow::chooseMode(const QString& identifier) {
    modes_->popup(mapToGlobal(QPoint()));
    const QList<QAction*> shown = modes_->actions();
    const auto found = std::ranges::find(
        shown, identifier, [](const QAction* action) { return action->data().toString(); });
    modes_->close();
    if (found == shown.end()) {
        return false;
    }
    (*found)->trigger();
    return true;
}

bool GalleryWindow::isDark() {
    return zel::ZelStyle::forStyleable(zel::ZelQtStyleable::of(*this))->isDarkStyle();
}

} // namespace gallery
