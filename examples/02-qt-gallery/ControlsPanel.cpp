// SPDX-License-Identifier: Apache-2.0
#include "ControlsPanel.h"

#include "Card.h"
#include "TintedStyle.h"

#include <ZelStyleKit/ZelQtColor.h>
#include <ZelStyleKit/ZelQtPalette.h>
#include <ZelStyleKit/ZelQtStyleable.h>
#include <ZelStyleKit/ZelStyleDomain.h>

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QTableWidget>
#include <QVBoxLayout>

namespace gallery {
namespace {

void addRow(Card& card, std::initializer_list<QWidget*> widgets) {
    auto* const row = new QHBoxLayout;
    row->setSpacing(8);
    for (QWidget* const each : widgets) {
        each->setMinimumHeight(28);
        row->addWidget(each, 1);
    }
    card.contents().addLayout(row);
}

/// A button or choice that is on, or can't be used.
template <class Button>
Button* button(const char* text, bool on = false, bool usable = true) {
    auto* const made = new Button(QLatin1String(text));
    made->setChecked(on);
    made->setEnabled(usable);
    return made;
}

QPushButton* defaultButton(const char* text) {
    auto* const made = new QPushButton(QLatin1String(text));
    made->setAutoDefault(true);
    made->setDefault(true);
    return made;
}

QSlider* slider(int value) {
    auto* const made = new QSlider(Qt::Horizontal);
    made->setValue(value);
    return made;
}

QProgressBar* progress(int value) {
    auto* const made = new QProgressBar;
    made->setTextVisible(false);
    made->setValue(value);
    return made;
}

QPixmap dotOf(const QColor& color) {
    QPixmap dot(32, 32);
    dot.fill(Qt::transparent);
    QPainter painter(&dot);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(dot.rect());
    return dot;
}

/// A button that gives the main styles the colour of one of their attributes as their accent.
QPushButton* accentButton(const char* name,
                          std::optional<zel::NSColor> (zel::ZelStyle::*color)() const) {
    auto* const made = new QPushButton;
    made->setToolTip(QLatin1String(name));
    const auto value = (zel::ZelStyleDomain::defaultDomain()->mainStyle().get()->*color)();
    made->setIcon(dotOf(zel::ZelQColorWithColor(value)));
    QObject::connect(made, &QPushButton::clicked, made, [value] { setAccent(*value); });
    return made;
}

} // namespace

Card* makeControls(QWidget* parent) {
    auto* const card =
        new Card(QStringLiteral("Controls"),
                 QStringLiteral("Their palette is made from the main style."), parent);
    addRow(*card, {defaultButton("Default"), button<QPushButton>("Button"),
                   button<QPushButton>("Disabled", false, false)});
    addRow(*card, {button<QCheckBox>("Checked", true), button<QCheckBox>("Unchecked"),
                   button<QCheckBox>("Disabled", true, false)});
    addRow(*card, {button<QRadioButton>("One", true), button<QRadioButton>("Another"),
                   button<QRadioButton>("Disabled", false, false)});
    addRow(*card, {slider(60), progress(60)});
    auto* const entry = new QLineEdit;
    entry->setTextMargins(5, 0, 5, 0);
    entry->setPlaceholderText(QStringLiteral("Placeholder"));
    auto* const choice = new QComboBox;
    choice->addItems({QStringLiteral("Choice"), QStringLiteral("Another")});
    auto* const number = new QSpinBox;
    number->setValue(42);
    addRow(*card, {entry, choice, number});
    card->contents().addStretch(1);
    return card;
}

Card* makeTable(QWidget* parent) {
    auto* const card =
        new Card(QStringLiteral("Table"),
                 QStringLiteral("Alternate rows, a selection and a header."), parent);
    static constexpr const char* rows[][2] = {{"light", "main"},
                                              {"light", "tinted"},
                                              {"dark", "main"},
                                              {"dark", "tinted"},
                                              {"default", "main"}};
    auto* const table = new QTableWidget(5, 2);
    table->setHorizontalHeaderLabels({QStringLiteral("Scheme"), QStringLiteral("Style")});
    for (int row = 0; row < 5; ++row) {
        for (int column = 0; column < 2; ++column) {
            table->setItem(row, column, new QTableWidgetItem(QLatin1String(rows[row][column])));
        }
    }
    table->setAlternatingRowColors(true);
    table->setShowGrid(false);
    table->setFrameShape(QFrame::NoFrame);
    table->setFocusPolicy(Qt::NoFocus);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->selectRow(1);
    card->contents().addWidget(table, 1);
    return card;
}

Card* makeTinted(QWidget* parent) {
    auto* const card = new Card(
        QStringLiteral("A derived style"),
        QStringLiteral(
            "\"tinted\" inherits from \"main\" and computes its surfaces from the accent."),
        parent);
    zel::ZelQtStyleable::of(*card)->setCustomZelStyleIdentifier(tintedStyle);
    zel::ZelQtPalette::follow(*card);
    using Style = zel::ZelStyle;
    addRow(*card,
           {accentButton("Blue", &Style::blueColor), accentButton("Purple", &Style::purpleColor),
            accentButton("Pink", &Style::pinkColor), accentButton("Orange", &Style::orangeColor),
            accentButton("Green", &Style::greenColor), accentButton("Teal", &Style::tealColor)});
    addRow(*card, {button<QPushButton>("Button"), button<QPushButton>("Disabled", false, false)});
    addRow(*card, {button<QCheckBox>("Checked", true), button<QRadioButton>("Chosen", true)});
    addRow(*card, {slider(35), progress(35)});
    auto* const entry = new QLineEdit(QStringLiteral("Text"));
    entry->setTextMargins(5, 0, 5, 0);
    addRow(*card, {entry});
    card->contents().addStretch(1);
    return card;
}

} // namespace gallery
