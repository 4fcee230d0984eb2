// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Operations.h"

namespace zeltest {

using namespace zel;

namespace {

void changeModes(World& world) {
    const auto mode = alloc<ZelStyleManagerMode>()->initWithIdentifier("passing", 1, "Passing");
    world.manager->addMode(mode);
    (void)world.manager->modes().size();
    world.manager->removeMode(mode);
}

void setUp(World&) {
    ZelStyleManager::setup();
    const auto& shared = ZelStyleManager::sharedStyleManager();
    while (!shared->modes().empty()) {
        shared->removeMode(shared->modes().front());
    }
    ZelStyleDomain::defaultDomain()->setSchemeFollowsSystem(false);
}

void turnSystem(World&) {
    const auto& application = NSApplication::sharedApplication();
    const NSAppearance former = application->effectiveAppearance();
    application->setEffectiveAppearance(NSAppearance::appearanceNamed(NSAppearanceNameDarkAqua));
    NSMainQueue::mainQueue().drain();
    application->setEffectiveAppearance(former);
    NSMainQueue::mainQueue().drain();
}

void track(World&) {
    const auto tracker = alloc<ZelStyleSystemAppearance>();
    tracker->init();
    tracker->determineFromSystemAppearance();
    tracker->setCurrentAppearanceType(ZelStyleSystemAppearanceTypeDark);
    NSMainQueue::mainQueue().drain();
}

void describeMode(World& world) {
    const auto& mode = world.mode;
    mode->setManager(world.manager);
    mode->setIdentifier("aside");
    mode->setName("Aside");
    mode->setRank(1);
    (void)mode->manager();
    (void)mode->identifier();
    (void)mode->name();
    (void)(mode->rank() + (mode->active() ? 1 : 0));
}

void addOperations(std::vector<Operation>& operations, const std::string& className, bool anyThread,
                   void (*run)(World&), std::initializer_list<const char*> names) {
    for (const char* name : names) {
        operations.push_back({className + "::" + name, anyThread, run});
    }
}

void arrangeViews(World&) {
    const auto view = alloc<NSView>();
    const auto above = alloc<NSView>();
    above->addSubview(view);
    (void)view->superview();
    (void)above->subviews();
    view->removeFromSuperview();
}

void arrangeControllers(World&) {
    const auto controller = alloc<NSViewController>();
    const auto above = alloc<NSViewController>();
    above->addChildViewController(controller);
    (void)controller->view();
    controller->setView(alloc<NSView>());
    (void)controller->isViewLoaded();
    (void)controller->parentViewController();
    (void)above->childViewControllers();
    controller->removeFromParentViewController();
}

void post(World& world) {
    auto& center = NSNotificationCenter::defaultCenter();
    const auto observer = alloc<NSObject>();
    center.addObserver(
        observer, [](const NSNotification&) {}, "operations", world.object);
    center.postNotificationName("operations", world.object);
    center.removeObserver(*observer, "operations", nullptr);
    (void)NSNotificationCenter();
}

void queue(World&) {
    NSMainQueue own;
    own.setWakeHook([] {});
    own.async([] {});
    NSMainQueue::mainQueue().async([] {});
}

void storeDefaults(World&) {
    auto& defaults = NSUserDefaults::standardUserDefaults();
    defaults.setStore(std::make_shared<NSUserDefaultsInMemory>());
    defaults.setObject(NSUserDefaultsValue(std::string("value")), "key");
    (void)defaults.objectForKey("key");
    NSUserDefaults own;
    own.setStore(std::make_shared<NSUserDefaultsInMemory>());
    NSUserDefaultsInMemory store;
    store.setObject(NSUserDefaultsValue(std::string("value")), "key");
    (void)store.objectForKey("key");
}

void describeProcess(World&) {
    NSProcessInfo::setProcessName("operations");
    (void)NSProcessInfo::processName();
    NSProcessInfo::setOperatingSystemVersion({10, 14, 0});
    (void)NSProcessInfo::isOperatingSystemAtLeastVersion({10, 14, 0});
}

void translate(World&) {
    NSBundle::setStringTable([](std::string_view) { return std::optional<std::string>("text"); });
    (void)NSBundle::localizedStringForKey("Light");
    NSBundle::setStringTable(nullptr);
}

void compareNames(World&) {
    setLocalizedComparison([](std::string_view a, std::string_view b) { return a.compare(b); });
    (void)localizedCaseInsensitiveCompare("a", "B");
    setLocalizedComparison(nullptr);
}

void lookAtAppearance(World&) {
    const auto appearance = NSAppearance::appearanceNamed(NSAppearanceNameVibrantDark);
    (void)appearance.name();
    (void)appearance.bestMatchFromAppearancesWithNames({NSAppearanceNameDarkAqua});
}

void setColors(World&) {
    const NSSystemColors former = NSSystemColors::systemColors();
    NSSystemColors::setSystemColors(former);
}

} // namespace

std::vector<Operation> appearanceOperations() {
    std::vector<Operation> all{
        {"ZelStyleManager::ZelStyleManager", true, [](World&) { (void)alloc<ZelStyleManager>(); }},
        {"ZelStyleManager::sharedStyleManager", true,
         [](World&) { (void)ZelStyleManager::sharedStyleManager(); }},
        {"ZelStyleManager::activeModeIdentifier", true,
         [](World& world) { (void)world.manager->activeModeIdentifier(); }},
        {"ZelStyleManager::activeMode", true,
         [](World& world) { (void)world.manager->activeMode(); }},
        {"ZelStyleManager::setActiveModeIdentifier", false,
         [](World& world) { world.manager->setActiveModeIdentifier("always-light"); }},
        {"ZelStyleManager::setup", false, setUp},
        {"ZelStyleManagerMode::setActive", false,
         [](World& world) { world.mode->setActive(true); }},
        {"ZelStyleSystemAppearance::sharedSystemAppearance", true,
         [](World&) { (void)ZelStyleSystemAppearance::sharedSystemAppearance(); }},
        {"ZelStyleSystemAppearance::currentAppearanceType", true,
         [](World&) {
             (void)ZelStyleSystemAppearance::sharedSystemAppearance()->currentAppearanceType();
         }},
    };
    addOperations(all, "ZelStyleManager", false, changeModes, {"modes", "addMode", "removeMode"});
    addOperations(all, "ZelStyleManagerMode", true,
                  [](World&) { (void)alloc<ZelStyleManagerMode>()->initWithIdentifier("", 0, ""); },
                  {"ZelStyleManagerMode", "initWithIdentifier"});
    addOperations(all, "ZelStyleManagerMode", true, describeMode,
                  {"active", "manager", "setManager", "identifier", "setIdentifier", "name",
                   "setName", "rank", "setRank"});
    addOperations(all, "ZelStyleSystemAppearance", false, track,
                  {"ZelStyleSystemAppearance", "init", "determineFromSystemAppearance",
                   "setCurrentAppearanceType"});
    return all;
}

std::vector<Operation> platformOperations() {
    std::vector<Operation> all{
        {"NSApp", true, [](World&) { (void)NSApp(); }},
        {"localizedCaseInsensitiveCompare", true, compareNames},
        {"setLocalizedComparison", true, compareNames},
        {"ZelStyleAttributeForKey", true,
         [](World&) { (void)ZelStyleAttributeForKey("labelColor"); }},
        {"ZelStyleAttributeKeyOf", true,
         [](World&) { (void)ZelStyleAttributeKeyOf(ZelStyleAttribute::LabelColor); }},
        {"NSApplication::NSApplication", false, [](World&) { (void)alloc<NSApplication>(); }},
        {"setMisuseHandler", true, [](World&) { setMisuseHandler(nullptr); }},
        {"NSApplication::sharedApplication", true,
         [](World&) { (void)NSApplication::sharedApplication(); }},
        {"NSMainQueue::drain", false, [](World&) { NSMainQueue::mainQueue().drain(); }},
    };
    addOperations(all, "NSApplication", false, turnSystem,
                  {"effectiveAppearance", "setEffectiveAppearance"});
    addOperations(all, "NSAppearance", true, lookAtAppearance,
                  {"appearanceNamed", "name", "bestMatchFromAppearancesWithNames"});
    addOperations(all, "NSBundle", true, translate, {"localizedStringForKey", "setStringTable"});
    addOperations(all, "NSMainQueue", true, queue,
                  {"NSMainQueue", "mainQueue", "async", "setWakeHook"});
    addOperations(all, "NSNotificationCenter", true, post,
                  {"NSNotificationCenter", "defaultCenter", "addObserver", "removeObserver",
                   "postNotificationName"});
    addOperations(all, "NSProcessInfo", true, describeProcess,
                  {"processName", "setProcessName", "isOperatingSystemAtLeastVersion",
                   "setOperatingSystemVersion"});
    addOperations(
        all, "NSUserDefaults", true, storeDefaults,
        {"NSUserDefaults", "standardUserDefaults", "objectForKey", "setObject", "setStore"});
    addOperations(all, "NSUserDefaultsInMemory", true, storeDefaults,
                  {"objectForKey", "setObject"});
    addOperations(all, "NSSystemColors", true, setColors, {"setSystemColors", "systemColors"});
    addOperations(all, "NSView", false, arrangeViews,
                  {"NSView", "addSubview", "removeFromSuperview", "superview", "subviews"});
    addOperations(all, "NSViewController", false, arrangeControllers,
                  {"NSViewController", "view", "setView", "isViewLoaded", "addChildViewController",
                   "removeFromParentViewController", "parentViewController",
                   "childViewControllers"});
    return all;
}

const std::vector<Operation>& allOperations() {
    static const std::vector<Operation> all = [] {
        std::vector<Operation> together;
        for (auto each : {styleOperations(), domainOperations(), appearanceOperations(),
                          platformOperations()}) {
            together.insert(together.end(), each.begin(), each.end());
        }
        return together;
    }();
    return all;
}

} // namespace zeltest
