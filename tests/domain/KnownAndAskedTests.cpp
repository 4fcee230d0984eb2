// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Styling.h"

#include <array>
#include <random>
#include <tuple>

namespace zeltest {
namespace {

using namespace zel;

constexpr std::size_t count = 24;
constexpr std::array schemes{"default", "light", "dark"};
constexpr std::array styles{"main", "a", "b"};

/// One call: who, which style (its scheme and identifier), which event.
using Call = std::tuple<std::size_t, std::string, std::uint64_t>;

/// Trees of objects with listeners, and what can be done to them. Two worlds that are told the same
/// must make the same calls, whether the library knows their links or asks for them.
class World {
public:
    explicit World(std::string_view domainIdentifier)
        : domain(ZelStyleDomain::domainForIdentifier(domainIdentifier)) {
        for (const char* scheme : schemes) {
            for (const char* style : styles) {
                // "b" is missing from the dark scheme, so that something falls back.
                if (std::string_view(scheme) != "dark" || std::string_view(style) != "b") {
                    names[addStyle(domain->schemeForIdentifier(scheme), style).get()] =
                        std::string(scheme) + "/" + style;
                }
            }
        }
    }
    virtual ~World() = default;

    virtual std::shared_ptr<NSObject> make() = 0;
    virtual void link(NSObject& object, const std::shared_ptr<NSObject>& parent) = 0;

    void create(std::size_t i) {
        destroy(i);
        objects[i] = make();
        above[i] = count;
    }
    void destroy(std::size_t i) {
        if (!objects[i]) {
            return;
        }
        for (std::size_t each = 0; each < count; ++each) {
            if (objects[each] && above[each] == i) {
                move(each, count);
            }
        }
        move(i, count);
        objects[i].reset();
    }
    void move(std::size_t i, std::size_t parent) {
        const bool somewhere = parent < count && objects[parent];
        for (std::size_t each = parent; somewhere && each < count; each = above[each]) {
            if (each == i) {
                return; // no circles
            }
        }
        above[i] = somewhere ? parent : count;
        link(*objects[i], somewhere ? objects[parent] : nullptr);
    }
    void listen(std::size_t i) {
        domain->registerChangeHandler(
            [this, i](const auto&, const auto& style, ZelStyleChangeEvent event) {
                calls.emplace_back(i, style ? names.at(style.get()) : "nil", event);
                if (depth < 2) {
                    ++depth;
                    std::mt19937 random(static_cast<unsigned>(seed * 1000 + calls.size()));
                    if (random() % 4 == 0) { // a handler that does something itself
                        act(random);
                    }
                    --depth;
                }
            },
            objects[i]);
    }

    /// Does one thing, decided by the numbers alone.
    void act(std::mt19937& random) {
        const std::size_t what = random() % 15;
        const std::size_t i = random() % count;
        const std::size_t other = random() % (count + 4);
        const std::string identifier = styles[random() % styles.size()];
        const std::string scheme = schemes[random() % schemes.size()];
        const bool flag = random() % 3 == 0;
        const std::shared_ptr<NSObject> held = objects[i];
        if (!held) {
            create(i);
            return;
        }
        switch (what) {
        case 0:
            destroy(i);
            break;
        case 1:
        case 2:
            move(i, other);
            break;
        case 3:
        case 12:
        case 13:
            listen(i);
            break;
        case 4:
            domain->unregisterChangeHandlersWithOwner(held);
            break;
        case 5:
            held->setCustomZelStyleIdentifier(flag ? std::nullopt
                                                   : std::optional<std::string_view>(identifier));
            break;
        case 6:
            held->setCustomZelStyleSchemeIdentifier(flag ? std::nullopt
                                                         : std::optional<std::string_view>(scheme));
            break;
        case 7:
            domain->setCurrentScheme(domain->schemeForIdentifier(scheme));
            break;
        case 8:
            domain->notifyForStyleChangeOf(held, {.force = flag});
            break;
        case 9:
            domain->notifyForStyleChangeOf(nullptr, {.force = flag});
            break;
        case 10:
            domain->notifyForStyleChangeOf(held,
                                           {.force = true, .forStyleOnly = domain->mainStyle()});
            break;
        default:
            domain->mainStyle()->updateStyleWithChanges(nullptr);
            break;
        }
    }

    std::shared_ptr<ZelStyleDomain> domain;
    std::map<const ZelStyle*, std::string> names;
    std::array<std::shared_ptr<NSObject>, count> objects;
    std::array<std::size_t, count> above{};
    std::vector<Call> calls;
    unsigned seed = 0;
    int depth = 0;
};

class KnownWorld : public World {
public:
    KnownWorld() : World("default") {}
    std::shared_ptr<NSObject> make() override { return alloc<NSView>(); }
    void link(NSObject& object, const std::shared_ptr<NSObject>& parent) override {
        auto view = std::static_pointer_cast<NSView>(object.shared_from_this());
        view->removeFromSuperview();
        if (parent) {
            std::static_pointer_cast<NSView>(parent)->addSubview(view);
        }
    }
};

class AskedWorld : public World {
public:
    AskedWorld() : World("asked") {}
    std::shared_ptr<NSObject> make() override {
        auto styled = makeStyled();
        styled->domainIdentifier = "asked";
        return styled;
    }
    void link(NSObject& object, const std::shared_ptr<NSObject>& parent) override {
        static_cast<Styled&>(object).parent = parent;
    }
};

class KnownAndAskedTests : public StylingTests, public testing::WithParamInterface<unsigned> {};

TEST_P(KnownAndAskedTests, ObjectsOfKnownTreesAreServedLikeThoseThatAreAskedForTheirParents) {
    KnownWorld known;
    AskedWorld asked;
    std::size_t made = 0;
    for (unsigned step = 0; step < 1500; ++step) {
        for (World* world : {static_cast<World*>(&known), static_cast<World*>(&asked)}) {
            world->calls.clear();
            world->seed = GetParam() * 100'000 + step;
            std::mt19937 random(world->seed);
            world->act(random);
        }
        ASSERT_EQ(known.calls, asked.calls) << "step " << step;
        ASSERT_EQ(known.above, asked.above) << "step " << step;
        made += known.calls.size();
    }
    EXPECT_GT(made, 1500U); // it was no idle comparison
}

INSTANTIATE_TEST_SUITE_P(Sequences, KnownAndAskedTests, testing::Range(1U, 9U));

} // namespace
} // namespace zeltest
