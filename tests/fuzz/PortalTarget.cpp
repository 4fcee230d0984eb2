// SPDX-License-Identifier: Apache-2.0
// A session bus and a desktop portal that say anything. A line of an input is one of
//   from NAME            in whose name all that follows is said (:1.5 to begin with)
//   reply VALUE...       how the portal answers the next questions; 0 in two variants, unless told
//   error NAME TEXT      the same, with an error
//   silence              the same, not now
//   late VALUE...        the answer to the question that has been left open for longest
//   changed VALUE...     the signal that a setting has changed
//   owner VALUE...       the signal that a name has got another owner
//   signal PATH INTERFACE MEMBER VALUE...
//                        any signal, where the bus allows its names
//   refresh              the host wants the portal asked again
//   wait                 half of the time that an answer may take goes by
// with values as in BusValue.h. How a question is answered stands behind the line that it follows
// from. Each reply is read by itself as well.
#include "integrations/portal/PortalAnswer.h"
#include "integrations/portal/PortalNames.h"
#include "tests/fuzz/BusPeer.h"
#include "tests/fuzz/PortalExpectation.h"
#include "tests/fuzz/Require.h"

#include <ZelStyleKit/NSApplication.h>
#include <ZelStyleKit/ZelPortalAppearance.h>

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <sys/socket.h>
#include <unistd.h>

namespace zelfuzz {
namespace {

constexpr std::chrono::milliseconds answerTimeout{1000};
std::chrono::milliseconds timeGoneBy{0};

} // namespace
} // namespace zelfuzz

// The clock of whoever follows the portal, in place of the standard library's: nobody waits, and
// nothing is late but where a story says so, even while the machine has no time for it.
std::chrono::steady_clock::time_point std::chrono::steady_clock::now() noexcept {
    return time_point(zelfuzz::timeGoneBy);
}

namespace zelfuzz {
namespace {

/// Reads a name on the bus; one that the bus doesn't allow changes nothing.
void readSender(Script& script, std::string& sender) {
    const std::string name = script.text();
    if (isAllowed(name, sd_bus_service_name_is_valid)) {
        sender = name;
    }
}

/// Reads the name of the signal that a line is about; one that the bus doesn't allow where there is
/// none.
SignalName readSignalName(std::string_view word, Script& script) {
    if (word == "signal") {
        return {script.text(), script.text(), script.text()};
    }
    return word == "changed" ? settingChanged : word == "owner" ? nameOwnerChanged : SignalName{};
}

/// Makes the message of a reply; of the plainest error where the bus doesn't allow this one, and
/// the reply is then that one.
Message messageOf(Reply& reply, sd_bus_message* question) {
    sd_bus_message* made = nullptr;
    const sd_bus_error error{reply.error.c_str(), reply.text.c_str(), 0};
    const int result = reply.error.empty()
                           ? sd_bus_message_new_method_return(question, &made)
                           : sd_bus_message_new_method_error(question, &made, &error);
    Message message(made, sd_bus_message_unref);
    const bool errorIsAllowed =
        reply.error.empty() || (isAllowed(reply.error, sd_bus_interface_name_is_valid) &&
                                reply.text.find('\0') == std::string::npos);
    if (result >= 0 && errorIsAllowed &&
        sd_bus_message_set_sender(made, reply.sender.c_str()) >= 0 &&
        (!reply.error.empty() || appendAll(reply.values, made))) {
        return message;
    }
    reply = Reply{portalsName, "org.example.No", {}, "no"};
    return messageOf(reply, question);
}

/// A connection that leads nowhere: messages can be made for it.
class Nowhere {
public:
    Nowhere() {
        require(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends_) == 0 &&
                    sd_bus_new(&bus_) >= 0 && sd_bus_set_fd(bus_, ends_[0], ends_[0]) >= 0 &&
                    sd_bus_start(bus_) >= 0 &&
                    sd_bus_message_new_method_call(bus_, &question_, zel::portalName,
                                                   zel::portalPath, zel::settingsInterface,
                                                   "Read") >= 0 &&
                    sd_bus_message_seal(question_, 1, 0) >= 0,
                "a connection that leads nowhere can be made");
    }
    Nowhere(const Nowhere&) = delete;
    Nowhere& operator=(const Nowhere&) = delete;
    ~Nowhere() {
        sd_bus_message_unref(question_);
        sd_bus_close_unref(bus_);
        ::close(ends_[1]);
    }
    [[nodiscard]] sd_bus_message* question() const noexcept { return question_; }

private:
    int ends_[2]{-1, -1};
    sd_bus* bus_ = nullptr;
    sd_bus_message* question_ = nullptr;
};

void checkReading(Reply reply) {
    static const Nowhere nowhere;
    const Message message = messageOf(reply, nowhere.question());
    if (sd_bus_message_seal(message.get(), 2, 0) < 0 ||
        sd_bus_message_rewind(message.get(), 1) < 0) {
        return;
    }
    const zel::PortalAnswer answer = zel::readAnswer(*message);
    using Kind = zel::PortalAnswer::Kind;
    const Kind expected = reply.error.empty()            ? Kind::Value
                          : reply.sender == zel::busName ? Kind::Unreachable
                                                         : Kind::Error;
    require(answer.kind == expected, "a reply is known for what it is", answer.text);
    require(answer.scheme == (reply.error.empty() ? schemeOf(reply.values) : std::nullopt),
            "a reply's number is read, and nothing else", answer.text);
    require(!answer.text.empty(), "every reply has a sentence about it");
}

/// Plays an input's story to the real thing, and to what is expected of it.
class Story {
public:
    explicit Story(std::string_view input)
        : script_(input), peer_([this](sd_bus_message* question) { hear(question); }) {}

    void play() {
        const auto application = zel::NSApplication::sharedApplication();
        application->setEffectiveAppearance(
            zel::NSAppearance::appearanceNamed(zel::NSAppearanceNameAqua));
        readReply();
        zel::ZelPortalOptions options;
        options.busAddress = peer_.address();
        options.answerTimeout = answerTimeout;
        options.retryAfter = std::chrono::milliseconds(0);
        portal_.start(std::move(options));
        do {
            settle();
            check(*application);
        } while (goOn());
    }

private:
    struct Question {
        int number;
        Message message;
    };

    /// Reads the lines that say how the next questions are answered.
    void readReply() {
        next_ = Reply{};
        Script ahead = script_;
        while (ahead.nextLine()) {
            const std::string_view word = ahead.word();
            if (word == "from") {
                readSender(ahead, sender_);
            } else if (word == "reply") {
                next_ = Reply{sender_, {}, BusValue::readAll(ahead), {}};
            } else if (word == "error") {
                const std::string name = ahead.text();
                next_ = Reply{sender_, name, {}, ahead.textToLineEnd()};
            } else if (word == "silence") {
                next_.reset();
            } else {
                break;
            }
            script_ = ahead;
        }
    }

    /// Does what the next line says; false behind the last one.
    bool goOn() {
        if (!script_.nextLine()) {
            return false;
        }
        const std::string_view word = script_.word();
        const SignalName signal = readSignalName(word, script_);
        const Values values = BusValue::readAll(script_);
        const std::string sender = sender_; // what follows is about replies to come
        readReply();
        if (peer_.emit(signal, values, sender.c_str())) {
            expected_.hear(signal, values, sender);
        } else if (word == "late" && !open_.empty()) {
            answer(open_.front(), {sender, {}, values, {}});
            open_.erase(open_.begin());
        } else if (word == "refresh") {
            portal_.refresh();
            expected_.askSoon();
        } else if (word == "wait") {
            timeGoneBy += answerTimeout / 2;
            expected_.waitForHalfTheTime();
        }
        return true;
    }

    void hear(sd_bus_message* message) {
        Question question{++questions_, Message(sd_bus_message_ref(message), sd_bus_message_unref)};
        if (next_) {
            answer(question, *next_);
        } else {
            open_.push_back(std::move(question));
        }
    }

    void answer(const Question& question, Reply reply) {
        const Message message = messageOf(reply, question.message.get());
        require(sd_bus_send(nullptr, message.get(), nullptr) >= 0, "a reply can be sent");
        expected_.take(question.number, reply);
    }

    /// Lets both sides work until neither has anything to do.
    void settle() {
        constexpr int enough = 3; // rounds in a row in which nothing came
        for (int idle = 0; idle < enough; ++idle) {
            while (peer_.process()) {
                idle = 0;
            }
            portal_.process();
        }
    }

    void check(const zel::NSApplication& application) const {
        require(questions_ == expected_.questions, "the portal is asked when it has to be");
        require(portal_.status() == expected_.status, "the status is what it says",
                portal_.reason());
        require(portal_.colorScheme() == expected_.scheme, "the scheme is the portal's",
                portal_.reason());
        const bool isDark =
            application.effectiveAppearance().name() == zel::NSAppearanceNameDarkAqua;
        require(isDark == (expected_.scheme == 1U), "dark is the number one, and nothing else",
                portal_.reason());
        require(!portal_.reason().empty(), "a status has a reason");
    }

    Script script_;
    std::string sender_ = portalsName;
    std::optional<Reply> next_; // none: silence
    Expectation expected_;
    int questions_ = 0;
    std::vector<Question> open_;
    BusPeer peer_;
    zel::ZelPortalAppearance portal_;
};

void checkReplies(Script script) {
    std::string sender = portalsName;
    while (script.nextLine()) {
        const std::string_view word = script.word();
        if (word == "from") {
            readSender(script, sender);
        } else if (word == "reply" || word == "late") {
            checkReading({sender, {}, BusValue::readAll(script), {}});
        } else if (word == "error") {
            const std::string name = script.text();
            checkReading({sender, name, {}, script.textToLineEnd()});
        }
    }
}

} // namespace
} // namespace zelfuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zelfuzz;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    checkReplies(Script(input));
    if (isOneOf(8, input)) {
        Story(input).play();
    }
    return 0;
}
