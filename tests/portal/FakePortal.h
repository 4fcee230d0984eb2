// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zeltest {

/// What a test plays in place of the desktop portal, on the test's own thread. Every operation of
/// it may wait for the bus daemon, never for the library.
/// Owns: its connection; the name of the portal goes with it.
class FakePortal {
public:
    /// Answers a question in its own way, now or never.
    using Answer = std::function<void(sd_bus_message* question)>;

    explicit FakePortal(const std::string& address);

    /// Becomes the portal.
    void takeName();
    /// Stays on the bus, but is the portal no more.
    void dropName();

    /// Answers every question with this number, in a variant in a variant, from now on.
    void setScheme(std::uint32_t scheme);
    /// Answers every question in this way from now on.
    void setAnswer(Answer answer) { answer_ = std::move(answer); }
    /// Keeps the questions; `answerKept` answers them.
    void keepQuestions();
    void answerKept(const Answer& answer);

    /// Says that a setting has changed: to everybody, or to one connection only.
    void emitChange(std::uint32_t scheme, const char* to = nullptr);
    void emitChangeOf(const char* group, const char* key, const char* to = nullptr);
    /// Says what a change says, but as another signal, or that of another object.
    void emitChangeAs(const char* path, const char* interface, const char* member, const char* to);
    /// Says so in a message that `fill` makes, whatever its shape, to one connection.
    void emitChangeOfShape(const std::function<void(sd_bus_message*)>& fill, const char* to);
    /// Puts a number of such signals on the bus.
    void emitFlood(int count);
    /// Claims towards one connection, not being the bus, that nobody is the portal any more.
    void forgeDeparture(const char* to);
    /// Calls another connection, which answers that there is nothing to call: `wasHeard` then says
    /// that it has handled all that was sent to it before.
    void knock(const std::string& at);
    [[nodiscard]] bool wasHeard() const { return wasHeard_; }
    /// Returns when the bus has handled all that was sent before.
    void finishSending();

    /// Handles what has come in.
    void process();
    [[nodiscard]] int fileDescriptor() const { return sd_bus_get_fd(bus_.get()); }

    /// How many questions for the colour scheme came.
    [[nodiscard]] int questions() const { return questions_; }
    /// Who asked last, as the bus calls it.
    [[nodiscard]] const std::string& asker() const { return asker_; }

private:
    struct Close {
        void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
    };
    struct Unref {
        void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
    };
    template <class... Values>
    void send(const char* path, const char* interface, const char* member, const char* to,
              const char* types, Values... values);
    static int called(sd_bus_message* message, void* self, sd_bus_error* error);

    std::unique_ptr<sd_bus, Close> bus_;
    Answer answer_;
    std::vector<std::unique_ptr<sd_bus_message, Unref>> kept_;
    int questions_ = 0;
    bool wasHeard_ = false;
    std::string asker_;
};

/// Answers: a number in so many variants, any other value as `sd_bus_message_append` takes it, and
/// an error.
FakePortal::Answer number(std::uint32_t value, int variants = 2);
FakePortal::Answer error(const char* name);

template <class... Values>
FakePortal::Answer reply(const char* types, Values... values) {
    return
        [=](sd_bus_message* question) { sd_bus_reply_method_return(question, types, values...); };
}

} // namespace zeltest
