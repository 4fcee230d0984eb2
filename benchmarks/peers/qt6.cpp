// SPDX-License-Identifier: Apache-2.0
#include "support/Program.h"
#include "support/TreeShape.h"

#include <QApplication>
#include <QPalette>
#include <QWidget>

#include <memory>
#include <utility>
#include <vector>

namespace zel::inline v1 {

namespace {

/// A widget that hears of its palette.
class Widget : public QWidget {
public:
    Widget(QWidget* parent, std::size_t& reached) : QWidget(parent), reached_(reached) {}

    /// Whether it has been told since this was asked last.
    bool takeTold() noexcept { return std::exchange(told_, false); }

protected:
    void changeEvent(QEvent* event) override {
        if (event->type() == QEvent::PaletteChange) {
            told_ = true;
            ++reached_;
        }
        QWidget::changeEvent(event);
    }

private:
    bool told_ = false;
    std::size_t& reached_;
};

/// Widgets in a tree; each belongs to its parent, all to the root.
struct Widgets {
    explicit Widgets(const std::vector<std::size_t>& parents) {
        nodes.push_back(root.get());
        nodes.reserve(parents.size() + 1);
        for (const std::size_t parent : parents) {
            nodes.push_back(new Widget(nodes[parent], calls)); // owned by its parent
        }
    }

    /// Makes them as a window's are when it is shown; others don't hear of the application's
    /// palette.
    void polish() {
        for (Widget* widget : nodes) {
            widget->ensurePolished();
        }
        QCoreApplication::sendPostedEvents();
    }

    /// Whether each of the widgets in a range of numbers was told since this was asked last.
    bool takeAllTold(std::size_t first, std::size_t count) {
        bool all = true;
        for (std::size_t i = first; i < first + count; ++i) {
            all = nodes[i]->takeTold() && all;
        }
        return all;
    }

    std::size_t calls = 0;
    std::unique_ptr<Widget> root = std::make_unique<Widget>(nullptr, calls);
    std::vector<Widget*> nodes;
};

QPalette paletteOf(bool dark) {
    return {dark ? QColor(30, 30, 30) : QColor(240, 240, 240)};
}

void readPalette(benchmark::State& state) {
    const QPalette palette = paletteOf(false);
    for (auto _ : state) {
        benchmark::DoNotOptimize(palette.color(QPalette::Active, QPalette::Window));
    }
}

void readWidget(benchmark::State& state) {
    const QWidget widget;
    for (auto _ : state) {
        benchmark::DoNotOptimize(widget.palette().color(QPalette::Window));
    }
}

// A widget may be told more than once; it must be told at least once.
void switchApplication(benchmark::State& state, Widgets& widgets, std::size_t size) {
    widgets.polish();
    bool dark = false;
    for (auto _ : state) {
        dark = !dark;
        QApplication::setPalette(paletteOf(dark));
        QCoreApplication::sendPostedEvents(); // by which the widgets hear of it
        state.PauseTiming();
        const bool all = widgets.takeAllTold(1, size);
        state.ResumeTiming();
        if (!all) {
            state.SkipWithError("a widget was not told");
            return;
        }
    }
}

void switchSome(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(state.range(0));
    QApplication::setPalette(paletteOf(false)); // so that the first change is one
    Widgets widgets(parentsOfTree(size));
    switchApplication(state, widgets, size);
}

// Kept for every run, and not taken apart at the end, which would take minutes.
void switchMany(benchmark::State& state) {
    constexpr std::size_t size = 1'000'000;
    QApplication::setPalette(paletteOf(false));
    static Widgets& widgets = *new Widgets(parentsOfTree(size));
    switchApplication(state, widgets, size);
}

void changeSubtree(benchmark::State& state) {
    constexpr std::size_t subtreeSize = 1000;
    const auto size = static_cast<std::size_t>(state.range(0));
    QApplication::setPalette(paletteOf(false)); // so that the first change is one
    // Kept for every run, and not taken apart at the end, which takes longer than the rest.
    static Widgets& widgets = *new Widgets(parentsOfBranches(size / subtreeSize, subtreeSize));
    const std::size_t branch = 1 + size / subtreeSize / 2 * subtreeSize;
    static bool dark = false; // as an earlier run left it
    for (auto _ : state) {
        dark = !dark;
        widgets.nodes[branch]->setPalette(paletteOf(dark));
        state.PauseTiming();
        const bool all = widgets.takeAllTold(branch, subtreeSize);
        state.ResumeTiming();
        if (!all) {
            state.SkipWithError("a widget was not told");
            return;
        }
    }
}

/// Sends a signal as generated code does.
class Sender : public QObject {
    Q_OBJECT
Q_SIGNALS:
    void changed(int event);
};

struct Listeners {
    explicit Listeners(std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            owners.push_back(std::make_unique<QObject>());
        }
        shuffleListeners(owners);
        for (const auto& owner : owners) {
            QObject::connect(&sender, &Sender::changed, owner.get(), [this](int) { ++calls; });
        }
    }

    std::size_t calls = 0;
    Sender sender;
    std::vector<std::unique_ptr<QObject>> owners;
};

void switchBySignal(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(state.range(0));
    Listeners listeners(size);
    for (auto _ : state) {
        listeners.calls = 0;
        Q_EMIT listeners.sender.changed(1);
        if (!reachedAll(state, listeners.calls, size)) {
            return;
        }
    }
}

void connectAndDisconnect(benchmark::State& state) {
    Listeners listeners(static_cast<std::size_t>(state.range(0)));
    const QObject owner;
    for (auto _ : state) {
        QObject::disconnect(QObject::connect(&listeners.sender, &Sender::changed, &owner,
                                             [&listeners](int) { ++listeners.calls; }));
    }
}

BENCHMARK(readPalette)->Name("read_own/qt_palette")->UseRealTime();
BENCHMARK(readWidget)->Name("read_own/qt_widget")->UseRealTime();
BENCHMARK(switchSome)
    ->Name("switch/qt_application")
    ->RangeMultiplier(10)
    ->Range(1000, 100'000)
    ->UseRealTime();
BENCHMARK(switchBySignal)
    ->Name("switch/qt_signal")
    ->RangeMultiplier(10)
    ->Range(1000, 1'000'000)
    ->UseRealTime();
BENCHMARK(changeSubtree)->Name("subtree/qt_widget")->Arg(100'000)->UseRealTime();
BENCHMARK(connectAndDisconnect)->Name("connect/qt_signal")->Arg(1000)->Arg(100'000)->UseRealTime();
// The last, since its widgets stay.
BENCHMARK(switchMany)->Name("switch/qt_application/1000000")->UseRealTime();

} // namespace

} // namespace zel::inline v1

int main(int argc, char** argv) {
    zel::becomeMultithreaded();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    return zel::runBenchmarks(argc, argv);
}

#include "qt6.moc"
