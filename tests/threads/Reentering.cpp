// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Parts.h"

#include <deque>
#include <mutex>

namespace zeltest {
namespace {

using namespace zel;

/// What a handler raises, and whoever caused its call catches.
struct OnPurpose {};

/// What the present thread is doing, from its own point of view.
struct Here {
    bool catches = false; ///< what handlers raise
    int depth = 0;        ///< of handlers at work inside each other
};
thread_local Here here;

/// Sets a field of the thread's for a scope.
template <class Field>
class Within {
public:
    Within(Field& field, Field value) : field_(field), former_(std::exchange(field, value)) {}
    Within(const Within&) = delete;
    Within& operator=(const Within&) = delete;
    ~Within() { field_ = former_; }

private:
    Field& field_;
    const Field former_;
};

/// One registration of an owner of its own. Each is listed in its first call, from which on any
/// thread may take it off the list and unregister it or let it end.
struct Registered {
    std::shared_ptr<ZelStyleDomain> domain;
    std::shared_ptr<Member> owner;
    std::shared_ptr<Diary> diary;
    bool isObject = false;
};

/// What the handlers do and do it to; used by whichever thread calls them, the threads' own work
/// goes on meanwhile.
struct Work {
    enum Kind : std::size_t { Add, Remove, End, Update, Pin, NotifyAll, NotifyBelow, Ask, Raise };
    static constexpr std::array<const char*, 9> names{"register in a handler",
                                                      "unregister in a handler",
                                                      "end an owner in a handler",
                                                      "update a style in a handler",
                                                      "pin a subtree in a handler",
                                                      "notify everybody in a handler",
                                                      "notify a subtree in a handler",
                                                      "ask for a domain in a handler",
                                                      "raise in a handler"};
    static constexpr std::size_t most = 24; // registrations at a time

    explicit Work(Stage& onStage) : stage(onStage) {}

    Stage& stage;
    /// Below it stand those that only listen. What works stands elsewhere: no handler's work
    /// changes the style of one that is being called.
    const std::shared_ptr<Member> pinned = std::make_shared<Member>(std::nullopt, nullptr);
    std::array<std::atomic<std::uint64_t>, names.size()> done{};
    std::atomic<std::uint64_t> turn{0};
    std::atomic<std::uint64_t> calls{0};

    std::mutex mutex; ///< guards what follows; nothing is called under it
    std::vector<Registered> listed;
    std::deque<Registered> removed; ///< the last ones: they live on, and are called no more

    void list(Registered registered) {
        const std::scoped_lock guard(mutex);
        listed.push_back(std::move(registered));
    }
    std::optional<Registered> take(std::size_t chosen) {
        const std::scoped_lock guard(mutex);
        if (listed.empty()) {
            return std::nullopt;
        }
        Registered taken = std::exchange(listed[chosen % listed.size()], std::move(listed.back()));
        listed.pop_back();
        return taken;
    }
    std::size_t count() {
        const std::scoped_lock guard(mutex);
        return listed.size();
    }

    void isCalled(const std::weak_ptr<Member>& owner, const std::shared_ptr<Diary>& diary,
                  const std::shared_ptr<ZelStyle>& style, ZelStyleChangeEvent event, bool isObject);
    void add(std::uint64_t number);
    void remove(const Registered& registered);
    void doNext();
    void doOne(Kind kind, std::uint64_t number);
};

/// A handler object.
class WorkingObject final : public Member {
public:
    WorkingObject(Work& work, const std::shared_ptr<NSObject>& parent)
        : Member(std::nullopt, parent), work_(work) {}

    void styleChangedWithEvent(const std::shared_ptr<ZelStyle>& style,
                               ZelStyleChangeEvent event) override {
        const auto kept = diary;
        work_.isCalled(std::static_pointer_cast<Member>(shared_from_this()), kept, style, event,
                       true);
    }

private:
    Work& work_;
};

void Work::isCalled(const std::weak_ptr<Member>& owner, const std::shared_ptr<Diary>& diary,
                    const std::shared_ptr<ZelStyle>& style, ZelStyleChangeEvent event,
                    bool isObject) {
    diary->note(style, event);
    const auto living = owner.lock();
    require(living != nullptr, "an owner is called after its end");
    if (event == ZelStyleChangeEventInitial) {
        list({stage.domain, living, diary, isObject});
    }
    constexpr int deepest = 2;
    const bool works = !living->parentZelStyleable(); // the others only listen
    if (works && here.depth < deepest && !stage.isOver && calls.fetch_add(1) % 4 == 0) {
        const Within deeper(here.depth, here.depth + 1);
        doNext();
    }
}

void Work::add(std::uint64_t number) {
    const std::shared_ptr<NSObject> parent = number % 3 == 0 ? pinned : nullptr;
    const auto diary = std::make_shared<Diary>(stage.livingDiaries);
    diary->mayBeCalled = true;
    ++diary->registrations;
    if (number % 2 == 0) {
        const auto object = std::make_shared<WorkingObject>(*this, parent);
        object->diary = diary;
        stage.domain->registerChangeHandler(object);
        return;
    }
    const auto owner = std::make_shared<Member>(std::nullopt, parent);
    owner->registerStyleableChangeHandler(
        [this, weak = std::weak_ptr(owner), diary](const auto&, const auto& style, auto event) {
            isCalled(weak, diary, style, event, false);
        });
}

void Work::remove(const Registered& registered) {
    if (registered.isObject) {
        registered.domain->unregisterChangeHandler(registered.owner);
    } else {
        registered.owner->unregisterStyleableChangeHandlers();
    }
    registered.diary->mayBeCalled = false;
    constexpr std::size_t mostRemoved = 8;
    Registered ended; // outside the mutex
    const std::scoped_lock guard(mutex);
    removed.push_back(registered);
    if (removed.size() > mostRemoved) {
        ended = std::exchange(removed.front(), {});
        removed.pop_front();
    }
}

void Work::doNext() {
    const std::uint64_t number = turn.fetch_add(1);
    const auto kind =
        here.catches && number % 3 == 0 ? Raise : static_cast<Kind>(number % Raise); // the others
    if (kind == Add && count() >= most) {
        return;
    }
    ++done[kind];
    doOne(kind, number / Raise);
}

void Work::doOne(Kind kind, std::uint64_t number) {
    switch (kind) {
    case Add:
        return add(number);
    case Remove:
        if (const auto taken = take(number)) {
            remove(*taken);
        }
        return;
    case End:
        (void)take(number);
        return;
    case Update:
        return stage.painted[number % stage.painted.size()].paint();
    case Pin:
        return pinned->setCustomZelStyleIdentifier(number % 2 == 0 ? std::optional("card")
                                                                   : std::nullopt);
    case NotifyAll:
        return stage.domain->notifyForStyleChangeOf(nullptr, {.force = true});
    case NotifyBelow:
        return stage.domain->notifyForStyleChangeOf(pinned, {.force = number % 2 == 0});
    case Ask: {
        const std::string name = "asked in a handler " + std::to_string(number % 50);
        const auto asked = ZelStyleDomain::domainForIdentifier(name);
        return require(asked && asked->domainIdentifier() == name, "a domain has another name");
    }
    case Raise:
        throw OnPurpose();
    }
}

/// Registers handlers that themselves register and unregister others, let owners end, update
/// styles, set identifiers, notify, ask for domains and raise, on whichever thread calls them.
class Reentering final : public Part {
public:
    using Part::Part;

    void act() override {
        const Within caught(here.catches, true);
        try {
            actOnce();
        } catch (const OnPurpose&) {
            ++raised_;
        }
    }

    // After a notification to everybody.
    void check() override {
        require(raised_ == work_.done[Work::Raise],
                "what a handler raised didn't come to who caused its call");
        while (const auto each = work_.take(0)) {
            const auto style = each->domain->styleFor(each->owner);
            require(each->diary->told == ZelStyleToken(style).serial(),
                    "a listener was told another style last than the one that applies");
            require(each->owner->lastZelStyle() == ZelStyleToken(style),
                    "another style is remembered than the one that applies");
            require(each->diary->initialCalls == 1, "a listener wasn't called once at first");
            work_.remove(*each);
        }
        stage.domain->notifyForStyleChangeOf(nullptr, {.force = true}); // tells the removed nothing
        work_.removed.clear();
        for (std::size_t kind = 0; kind < Work::names.size(); ++kind) {
            progress.add(Work::names[kind], work_.done[kind]);
        }
    }

private:
    void actOnce() {
        if (work_.count() < 6) {
            progress.begin("register a handler that works");
            return work_.add(random());
        }
        switch (any(6)) {
        case 0:
            progress.begin("unregister a handler that works");
            if (const auto taken = work_.take(random())) {
                work_.remove(*taken);
            }
            return;
        case 1:
            progress.begin("end the owner of a handler that works");
            (void)work_.take(random());
            return;
        case 2:
            progress.begin("force handlers to work");
            return stage.domain->notifyForStyleChangeOf(nullptr, {.force = true});
        case 3:
            progress.begin("have handlers work in an update");
            return stage.painted.front().paint();
        default:
            if (work_.count() < Work::most) {
                progress.begin("register a handler that works");
                work_.add(random());
            }
        }
    }
    std::size_t random() { return any(std::size_t{1} << 20); }

    Work work_{stage};
    std::uint64_t raised_ = 0;
};

} // namespace

const MakePart makeReentering = makePart<Reentering>;

} // namespace zeltest
