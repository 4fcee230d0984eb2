// SPDX-License-Identifier: Apache-2.0
// An application of many widgets turns dark, then light: through the library, beside
// QApplication::setPalette with as many plain widgets. The time ends when every event has
// been handled; that of a window that is shown includes its painting. Without a display: nothing
// waits for a screen.
#include <ZelStyleKit/ZelQtApplicationPalette.h>
#include <ZelStyleKit/ZelQtColor.h>
#include <ZelStyleKit/ZelQtMainQueue.h>
#include <ZelStyleKit/ZelQtPalette.h>
#include <ZelStyleKit/ZelQtStyleable.h>
#include <ZelStyleKit/ZelStyleKit.h>

#include <QApplication>
#include <QPainter>
#include <QWidget>

#include <benchmark/benchmark.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <thread>

namespace {

constexpr int widgetsInAPanel = 100;
constexpr int panelsInARow = 10;
constexpr int side = 8; // of a widget, in pixels

/// Shows its palette's colour.
class PlainWidget : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter(this).fillRect(rect(), palette().color(QPalette::Window));
    }
};

/// Shows its style's colour.
class StyledWidget : public QWidget {
public:
    explicit StyledWidget(QWidget* parent) : QWidget(parent) {
        zel::ZelQtStyleable::of(*this)->registerStyleableChangeHandler(
            [this](const auto&, const auto& style, auto) {
                color_ = zel::ZelQColorWithColor(style->backgroundColorSecondary());
                update();
            });
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override { QPainter(this).fillRect(rect(), color_); }

private:
    QColor color_;
};

/// A window of panels, each full of widgets.
template <class Widget>
std::unique_ptr<QWidget> makeWindow(const benchmark::State& state) {
    const auto widgets = state.range(0);
    auto window = std::make_unique<QWidget>();
    for (int panelNumber = 0; panelNumber * widgetsInAPanel < widgets; ++panelNumber) {
        auto* const panel = new QWidget(window.get());
        panel->setGeometry(panelNumber % panelsInARow * 10 * side,
                           panelNumber / panelsInARow * 10 * side, 10 * side, 10 * side);
        for (int number = 0; number < widgetsInAPanel; ++number) {
            auto* const widget = new Widget(panel);
            widget->setGeometry(number % 10 * side, number / 10 * side, side, side);
        }
    }
    window->resize(panelsInARow * 10 * side, panelsInARow * 10 * side);
    window->setVisible(state.range(1) != 0);
    QCoreApplication::processEvents();
    return window;
}

void handleAllEvents() {
    for (int round = 0; round < 3; ++round) { // a palette is handed on, then painted, in turns
        QCoreApplication::processEvents();
    }
}

/// What the last widget shows must be what was set.
void check(QWidget& window, bool dark) {
    auto* const last = window.findChildren<QWidget*>().last();
    const QRgb shown = last->grab().toImage().pixel(side / 2, side / 2);
    if ((qRed(shown) < 128) != dark) {
        throw std::runtime_error("the colours are those from before");
    }
}

void makeSystem(bool dark) {
    zel::NSApplication::sharedApplication()->setEffectiveAppearance(
        zel::NSAppearance::appearanceNamed(dark ? zel::NSAppearanceNameDarkAqua
                                                : zel::NSAppearanceNameAqua));
}

void plainWidgetsSetPalette(benchmark::State& state) {
    const auto domain = zel::ZelStyleDomain::defaultDomain();
    const QPalette palettes[] = {
        zel::ZelQtPalette::paletteWithStyle(domain->lightScheme()->styleForIdentifier("main")),
        zel::ZelQtPalette::paletteWithStyle(domain->darkScheme()->styleForIdentifier("main"))};
    QApplication::setPalette(palettes[0]);
    const auto window = makeWindow<PlainWidget>(state);
    bool dark = false;
    for ([[maybe_unused]] auto iteration : state) {
        dark = !dark;
        QApplication::setPalette(palettes[dark ? 1 : 0]);
        handleAllEvents();
    }
    check(*window, dark);
}

void styledWidgetsSwitch(benchmark::State& state) {
    const auto window = makeWindow<StyledWidget>(state);
    bool dark = false;
    for ([[maybe_unused]] auto iteration : state) {
        dark = !dark;
        makeSystem(dark);
        handleAllEvents();
    }
    check(*window, dark);
    makeSystem(false);
    handleAllEvents();
}

void styledWidgetsSwitchWithPalette(benchmark::State& state) {
    const zel::ZelQtApplicationPalette palette;
    styledWidgetsSwitch(state);
}

void sizes(benchmark::internal::Benchmark* each) {
    each->ArgNames({"widgets", "shown"})->ArgsProduct({{1000, 10000}, {0, 1}});
    each->Unit(benchmark::kMillisecond);
    each->Repetitions(9)->ReportAggregatesOnly();
}

BENCHMARK(plainWidgetsSetPalette)->Apply(sizes);
BENCHMARK(styledWidgetsSwitch)->Apply(sizes);
BENCHMARK(styledWidgetsSwitchWithPalette)->Apply(sizes);

} // namespace

int main(int argc, char** argv) {
    std::thread([] {}).join(); // without one, shared pointers would leave out their atomics
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const zel::ZelQtMainQueue queue;
    makeSystem(false);
    zel::ZelStyleManager::setup();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
