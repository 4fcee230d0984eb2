// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Parts.h"

namespace zeltest {
namespace {

using namespace zel;

/// The main thread: schemes, modes, the appearance, the main queue, the providers, root styles, and
/// a tree of views.
class Directing final : public Part {
public:
    Directing(Stage& onStage, Progress& ownProgress, std::uint64_t seed)
        : Part(onStage, ownProgress, seed) {
        for (std::size_t i = 0; i < 30; ++i) {
            views_.push_back(makeView());
        }
    }

    void act() override {
        switch (any(9)) {
        case 0:
            return switchScheme();
        case 1:
            return chooseMode();
        case 2:
            return turnTheSystem();
        case 3:
            return changeModes();
        case 4:
            return changeProviders();
        case 5:
            return moveView();
        case 6:
            return pinView();
        case 7:
            return replaceView();
        default:
            progress.begin("drain the main queue");
            NSMainQueue::mainQueue().drain();
        }
    }

    void check() override {
        for (const auto& view : views_) {
            const auto style = ZelStyle::forStyleable(view.view);
            require(view.diary->told == ZelStyleToken(style).serial(),
                    "a view was told another style last than the one that applies");
            require(view.diary->initialCalls == 1, "a view wasn't called once at first");
        }
        views_.clear();
        NSMainQueue::mainQueue().drain();
    }

private:
    struct ListeningView {
        std::shared_ptr<NSView> view;
        std::shared_ptr<Diary> diary;
    };

    ListeningView makeView() {
        ListeningView made{alloc<NSView>(), std::make_shared<Diary>(stage.livingDiaries)};
        made.diary->mayBeCalled = true;
        made.view->registerStyleableChangeHandler(
            [diary = made.diary](const auto&, const auto& style, auto event) {
                diary->note(style, event);
            });
        if (!views_.empty()) {
            anyOf(views_).view->addSubview(made.view);
        }
        return made;
    }

    void switchScheme() {
        progress.begin("switch a scheme");
        const auto domain = any(2) == 0 ? stage.domain : stage.editor;
        const std::array schemes{domain->lightScheme(), domain->darkScheme(),
                                 domain->defaultScheme()};
        const auto& scheme = schemes[any(schemes.size())];
        domain->setCurrentScheme(scheme);
        require(domain->currentScheme() == scheme, "another scheme is current");
    }
    void chooseMode() {
        progress.begin("choose a mode");
        constexpr std::array<std::string_view, 3> modes{"always-light", "always-dark",
                                                        "follow-system"};
        ZelStyleManager::sharedStyleManager()->setActiveModeIdentifier(modes[any(modes.size())]);
    }
    void turnTheSystem() {
        progress.begin("turn the system dark or light");
        NSApplication::sharedApplication()->setEffectiveAppearance(NSAppearance::appearanceNamed(
            any(2) == 0 ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua));
        NSMainQueue::mainQueue().drain();
    }
    void changeModes() {
        progress.begin("add a mode and remove it");
        const auto& manager = ZelStyleManager::sharedStyleManager();
        const auto mode = alloc<ZelStyleManagerMode>()->initWithIdentifier("own", any(200), "Own");
        manager->addMode(mode);
        require(mode->manager() == manager, "a mode has another manager");
        manager->removeMode(mode);
        require(manager->modes().size() == modes_, "a mode has come or gone");
    }
    void changeProviders() {
        progress.begin("add a provider, make a root style, remove it");
        const auto provider = ZelStyleDefaultValueProvider::providerWithIdentifier(
            "own", std::nullopt,
            [](const auto& style, const auto&) { style->setLabelColor(NSColor::blackColor()); });
        ZelStyle::addDefaultValueProvider(provider);
        const auto root = alloc<ZelStyle>()->initWithIdentifier("root", stage.editor->darkScheme());
        ZelStyle::removeDefaultValueProvider(provider);
        require(root->labelColor() == NSColor::blackColor(), "a provider didn't run");
        require(root->isDarkStyle(), "the built-in providers didn't run");
    }
    void moveView() {
        progress.begin("move a view");
        const auto& view = anyOf(views_).view;
        const auto& place = anyOf(views_).view;
        if (ZelStyleDomain::isEqualOrChildOf(place, view)) {
            view->removeFromSuperview();
        } else {
            place->addSubview(view);
        }
        stage.domain->notifyForStyleChangeOf(view, {});
    }
    void pinView() {
        progress.begin("pin a view");
        constexpr std::array<std::optional<std::string_view>, 3> schemes{std::nullopt, "light",
                                                                         "dark"};
        anyOf(views_).view->setCustomZelStyleSchemeIdentifier(schemes[any(schemes.size())]);
    }
    void replaceView() {
        progress.begin("replace a view");
        ListeningView& place = anyOf(views_);
        place.view->removeFromSuperview();
        place = makeView();
    }

    const std::size_t modes_ = ZelStyleManager::sharedStyleManager()->modes().size();
    std::vector<ListeningView> views_;
};

} // namespace

const MakePart makeDirecting = makePart<Directing>;

} // namespace zeltest
