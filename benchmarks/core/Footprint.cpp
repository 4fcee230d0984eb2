// SPDX-License-Identifier: Apache-2.0
// What things take from the heap, by counting what passes through operator new. A program of its
// own, so that the counting slows no benchmark.
#include "core/UpdatedStyle.h"
#include "support/Program.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

// Bytes are those asked for; each block has its size in front, so that a release can be counted.
struct Heap {
    std::int64_t allocations = 0;
    std::int64_t bytes = 0;
};
Heap heap; // of the main thread, which is the only one that allocates meanwhile

// Not inlined below: a compiler that sees through both sides takes the offset for a mistake.
constexpr std::size_t headerSize = alignof(std::max_align_t);

[[gnu::noinline]] void* allocate(std::size_t size) {
    auto* block = static_cast<std::size_t*>(std::malloc(size + headerSize));
    if (!block) {
        throw std::bad_alloc();
    }
    *block = size;
    ++heap.allocations;
    heap.bytes += static_cast<std::int64_t>(size);
    return reinterpret_cast<char*>(block) + headerSize;
}

[[gnu::noinline]] void release(void* memory) noexcept {
    if (memory) {
        auto* block = reinterpret_cast<std::size_t*>(static_cast<char*>(memory) - headerSize);
        heap.bytes -= static_cast<std::int64_t>(*block);
        std::free(block);
    }
}

} // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    release(memory);
}
void operator delete[](void* memory) noexcept {
    release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    release(memory);
}

namespace zel::inline v1 {

namespace {

struct ColdSetup {
    double seconds = 0;
    std::int64_t allocations = 0;
};
ColdSetup coldSetup;

// Once per process, before anything else of the library has run.
void measureColdSetup() {
    const std::int64_t before = heap.allocations;
    const auto start = std::chrono::steady_clock::now();
    ZelStyleManager::setup();
    const auto end = std::chrono::steady_clock::now();
    coldSetup = {std::chrono::duration<double>(end - start).count(), heap.allocations - before};
}

void setupCold(benchmark::State& state) {
    for (auto _ : state) {
        state.SetIterationTime(coldSetup.seconds);
    }
    state.counters["allocations"] = static_cast<double>(coldSetup.allocations);
}

// A listener with one handler, with everything that its registration makes, tables included.
void listenerBytes(benchmark::State& state) {
    constexpr std::size_t count = 100'000;
    for (auto _ : state) {
        std::vector<std::shared_ptr<NSView>> views;
        for (std::size_t i = 0; i < count; ++i) {
            views.push_back(alloc<NSView>());
        }
        const std::int64_t before = heap.bytes;
        std::size_t calls = 0;
        for (const auto& view : views) {
            view->registerStyleableChangeHandler(
                [&calls](const auto&, const auto&, ZelStyleChangeEvent) { ++calls; });
        }
        const std::int64_t taken = heap.bytes - before;
        reachedAll(state, calls, count);
        state.counters["bytes"] = static_cast<double>(taken) / count;
    }
}

// A child style with three values of its own, as it is made and once it has been read.
void childStyleBytes(benchmark::State& state) {
    constexpr std::size_t count = 1000;
    const auto light = ZelStyleDomain::defaultDomain()->lightScheme();
    const auto parent = light->styleForIdentifier("main");
    static_cast<void>(parent->backgroundColor());
    for (auto _ : state) {
        std::vector<std::shared_ptr<ZelStyle>> styles;
        styles.reserve(count);
        const std::int64_t before = heap.bytes;
        for (std::size_t i = 0; i < count; ++i) {
            auto style = alloc<ZelStyle>()->initWithIdentifier("child", light, parent);
            style->setBackgroundColor(NSColor::blackColor());
            style->setLabelColor(NSColor::whiteColor());
            style->setGrayColor(NSColor::whiteColor());
            styles.push_back(std::move(style));
        }
        const std::int64_t unread = heap.bytes - before;
        for (const auto& style : styles) {
            benchmark::DoNotOptimize(style->backgroundColor());
        }
        state.counters["bytes"] = static_cast<double>(unread) / count;
        state.counters["bytes_read"] = static_cast<double>(heap.bytes - before) / count;
    }
}

// The second update, since the first one may still make room.
void updateAllocations(benchmark::State& state) {
    UpdatedStyle updated(10'000);
    updated.update();
    for (auto _ : state) {
        const std::int64_t before = heap.allocations;
        updated.update();
        state.counters["allocations"] = static_cast<double>(heap.allocations - before);
    }
}

BENCHMARK(setupCold)->Name("setup_cold/ours")->Iterations(1)->UseManualTime();
BENCHMARK(listenerBytes)->Name("listener_bytes/ours")->Iterations(1);
BENCHMARK(childStyleBytes)->Name("child_style_bytes/ours")->Iterations(1);
BENCHMARK(updateAllocations)->Name("update_allocations/ours")->Iterations(1);

} // namespace

} // namespace zel::inline v1

int main(int argc, char** argv) {
    zel::becomeMultithreaded();
    zel::measureColdSetup();
    return zel::runBenchmarks(argc, argv);
}
