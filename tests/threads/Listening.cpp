// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Parts.h"

namespace zeltest {
namespace {

using namespace zel;

/// Registers listeners of both kinds, gives them identifiers, unregisters them and lets them go.
class Listening final : public Part {
public:
    using Part::Part;

    void act() override {
        if (listeners_.size() < 5 || (listeners_.size() < 60 && any(2) == 0)) {
            return any(3) == 0 ? addObject() : addOwner();
        }
        const std::size_t index = any(listeners_.size());
        switch (any(6)) {
        case 0:
            return unregister(index);
        case 1:
            return letGo(index);
        case 2:
            return pinScheme(listeners_[index]);
        case 3:
            return pinStyle(listeners_[index]);
        case 4:
            return registerAgain(listeners_[index]);
        default:
            return comeAndGo();
        }
    }

    // After a notification to everybody: who was missed in between is told by it.
    void check() override {
        for (const Listener& each : listeners_) {
            const auto style = each.domain->styleFor(each.member);
            require(each.diary->told == ZelStyleToken(style).serial(),
                    "a listener was told another style last than the one that applies");
            require(each.member->lastZelStyle() == ZelStyleToken(style),
                    "another style is remembered than the one that applies");
            require(each.diary->initialCalls == each.diary->registrations,
                    "a listener wasn't called once for each of its registrations");
        }
        listeners_.clear();
    }

private:
    struct Listener {
        std::shared_ptr<ZelStyleDomain> domain;
        std::shared_ptr<Member> member;
        std::shared_ptr<Diary> diary;
        bool isObject = false;
    };

    Listener make(bool isObject) {
        const auto& target = anyOf(stage.targets);
        Listener made;
        made.domain = ZelStyleDomain::domainForStyleable(target);
        made.member = std::make_shared<Member>(made.domain->domainIdentifier(), target);
        made.diary = std::make_shared<Diary>(stage.livingDiaries);
        made.isObject = isObject;
        return made;
    }
    static void add(const Listener& listener) {
        listener.diary->mayBeCalled = true;
        ++listener.diary->registrations;
        if (listener.isObject) {
            listener.member->diary = listener.diary;
            listener.domain->registerChangeHandler(listener.member);
        } else {
            listener.member->registerStyleableChangeHandler(
                [diary = listener.diary](const auto&, const auto& style, auto event) {
                    diary->note(style, event);
                });
        }
    }
    void addOwner() {
        progress.begin("register a handler");
        add(listeners_.emplace_back(make(false)));
    }
    void addObject() {
        progress.begin("register a handler object");
        add(listeners_.emplace_back(make(true)));
    }
    void registerAgain(const Listener& listener) {
        if (listener.isObject) {
            progress.begin("register a handler object again");
            ++listener.diary->registrations;
            listener.domain->registerChangeHandler(listener.member);
            return;
        }
        progress.begin("register a second handler");
        listener.domain->registerChangeHandler([](const auto&, const auto&, auto) {},
                                               listener.member);
    }
    static void remove(const Listener& listener) {
        if (listener.isObject) {
            listener.domain->unregisterChangeHandler(listener.member);
        } else {
            listener.member->unregisterStyleableChangeHandlers();
        }
        listener.diary->mayBeCalled = false;
    }
    Listener take(std::size_t index) {
        Listener taken = std::exchange(listeners_[index], std::move(listeners_.back()));
        listeners_.pop_back();
        return taken;
    }
    void unregister(std::size_t index) {
        progress.begin("unregister a listener");
        const Listener gone = take(index);
        remove(gone);
        require(gone.isObject || gone.diary.use_count() == 1, "a removed handler is kept");
        if (any(2) == 0) {
            add(gone);
            listeners_.push_back(gone);
        }
    }
    void letGo(std::size_t index) {
        progress.begin("let a listener end");
        (void)take(index);
    }
    void pinScheme(const Listener& listener) {
        progress.begin("set a scheme identifier");
        constexpr std::array<std::optional<std::string_view>, 4> schemes{std::nullopt, "light",
                                                                         "dark", "default"};
        listener.member->setCustomZelStyleSchemeIdentifier(schemes[any(schemes.size())]);
    }
    void pinStyle(const Listener& listener) {
        progress.begin("set a style identifier");
        constexpr std::array<std::optional<std::string_view>, 3> styles{std::nullopt, "card",
                                                                        "none"};
        listener.member->setCustomZelStyleIdentifier(styles[any(styles.size())]);
    }
    void comeAndGo() {
        progress.begin("register a listener and let it end");
        add(make(false));
    }

    std::vector<Listener> listeners_;
};

/// Notifies everybody, a subtree or a family, in one domain or the other.
class Notifying final : public Part {
public:
    using Part::Part;

    void act() override {
        ZelStyleDomain& domain = any(2) == 0 ? *stage.domain : *stage.editor;
        switch (any(5)) {
        case 0:
            progress.begin("notify everybody");
            return domain.notifyForStyleChangeOf(nullptr, {});
        case 1:
            progress.begin("force a notification to everybody");
            return domain.notifyForStyleChangeOf(nullptr, {.force = true});
        case 2:
            progress.begin("force a notification to a family of styles");
            return domain.notifyForStyleChangeOf(
                nullptr, {.force = true, .forStyleOnly = anyPainted().style});
        case 3:
            progress.begin("notify a subtree");
            return domain.notifyForStyleChangeOf(anyOf(stage.targets), {.force = any(2) == 0});
        default:
            progress.begin("pin a subtree");
            return anyOf(stage.targets)
                ->setCustomZelStyleIdentifier(any(2) == 0 ? std::optional("card") : std::nullopt);
        }
    }
};

} // namespace

const MakePart makeListening = makePart<Listening>;
const MakePart makeNotifying = makePart<Notifying>;

} // namespace zeltest
