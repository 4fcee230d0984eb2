// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string_view>

namespace zeltest {

/// What the contract asks of a toolkit: to make widgets of its own kind, to say which styleable
/// stands for each, and to run its event loop with the library on it.
/// Owns: the widgets that it made, as the toolkit owns its widgets: a window all that is in it, and
/// the popups and dialogs that belong to it. Threads: the main thread.
class Toolkit {
public:
    /// A widget of the toolkit, of whatever type; good until it is destroyed.
    using Widget = void*;

    Toolkit() = default;
    virtual ~Toolkit() = default;
    Toolkit(const Toolkit&) = delete;
    Toolkit& operator=(const Toolkit&) = delete;

    /// Before each test: connects the library's main queue to the toolkit's event loop.
    virtual void connect() = 0;
    /// After each test: destroys every widget that is left, lets go of queue, portal and store.
    virtual void disconnect() = 0;

    /// A window of its own; its widget.
    virtual Widget makeWindow() = 0;
    /// A widget inside another one.
    virtual Widget makeChild(Widget parent) = 0;
    /// A popup, menu or popover that belongs to a widget. It need not be open.
    virtual Widget makePopup(Widget owner) = 0;
    /// A dialog, in a window of its own, that belongs to a window.
    virtual Widget makeDialog(Widget ownerWindow) = 0;
    /// Takes a child, with all that is below it, into another parent, as an application would.
    virtual void move(Widget child, Widget newParent) = 0;
    /// Destroys a widget and all that is below it or belongs to it, at once.
    virtual void destroy(Widget widget) = 0;

    /// The styleable that stands for a widget.
    virtual std::shared_ptr<zel::NSObject> styleableOf(Widget widget) = 0;
    /// How the toolkit's users pin a subtree to a scheme or a style.
    virtual void setScheme(Widget widget, std::string_view identifier) {
        styleableOf(widget)->setCustomZelStyleSchemeIdentifier(identifier);
    }
    virtual void setStyle(Widget widget, std::string_view identifier) {
        styleableOf(widget)->setCustomZelStyleIdentifier(identifier);
    }

    /// Runs the event loop: handles what waits there, and waits for more, no longer than that. May
    /// return earlier.
    virtual void run(std::chrono::milliseconds atMost) = 0;

    /// Makes the user defaults those that the toolkit's applications have, kept below the folder
    /// XDG_CONFIG_HOME.
    virtual void keepDefaultsAsApplicationsDo() = 0;
#ifdef ZEL_CONTRACT_PORTAL
    /// Has the application's appearance follow the desktop portal, on the toolkit's event loop.
    virtual void followDesktop() = 0;
#endif

    /// Runs the event loop until nothing waits there.
    void settle() {
        for (int round = 0; round < 3; ++round) {
            run(std::chrono::milliseconds(0));
        }
    }
    /// Runs the event loop until the condition holds; false where it doesn't after 20 s.
    bool runUntil(const std::function<bool()>& condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > end) {
                return false;
            }
            run(std::chrono::milliseconds(20));
        }
        return true;
    }
};

/// The toolkit under test, with what it needs for the whole process, such as its application
/// object. Each toolkit's program defines it; called once, with the arguments of `main`.
std::unique_ptr<Toolkit> makeToolkit(int& argc, char** argv);

} // namespace zeltest
