// SPDX-License-Identifier: Apache-2.0
#include "FakePortal.h"

#include <gtest/gtest.h>

namespace zeltest {
namespace {

constexpr char portalName[] = "org.freedesktop.portal.Desktop";
constexpr char portalPath[] = "/org/freedesktop/portal/desktop";
constexpr char settings[] = "org.freedesktop.portal.Settings";
constexpr char appearance[] = "org.freedesktop.appearance";
constexpr char colorScheme[] = "color-scheme";

} // namespace

FakePortal::FakePortal(const std::string& address) : answer_(number(0)) {
    sd_bus* made = nullptr;
    EXPECT_GE(sd_bus_new(&made), 0);
    bus_.reset(made);
    EXPECT_GE(sd_bus_set_address(made, address.c_str()), 0);
    EXPECT_GE(sd_bus_set_bus_client(made, 1), 0);
    EXPECT_GE(sd_bus_start(made), 0);
    EXPECT_GE(sd_bus_add_object(made, nullptr, portalPath, called, this), 0);
    finishSending();
}

void FakePortal::takeName() {
    EXPECT_GE(sd_bus_request_name(bus_.get(), portalName, 0), 0);
}

void FakePortal::dropName() {
    EXPECT_GE(sd_bus_release_name(bus_.get(), portalName), 0);
}

int FakePortal::called(sd_bus_message* message, void* self, sd_bus_error*) {
    auto& portal = *static_cast<FakePortal*>(self);
    const char* group = nullptr;
    const char* key = nullptr;
    if (sd_bus_message_is_method_call(message, settings, "Read") <= 0 ||
        sd_bus_message_read(message, "ss", &group, &key) <= 0 || std::string(group) != appearance ||
        std::string(key) != colorScheme) {
        return 0;
    }
    ++portal.questions_;
    portal.asker_ = sd_bus_message_get_sender(message);
    const auto answer = portal.answer_; // which may set another one
    answer(message);
    return 1;
}

void FakePortal::setScheme(std::uint32_t scheme) {
    setAnswer(number(scheme));
}

void FakePortal::keepQuestions() {
    setAnswer(
        [this](sd_bus_message* question) { kept_.emplace_back(sd_bus_message_ref(question)); });
}

void FakePortal::answerKept(const Answer& answer) {
    for (const auto& question : kept_) {
        answer(question.get());
    }
    kept_.clear();
}

template <class... Values>
void FakePortal::send(const char* path, const char* interface, const char* member, const char* to,
                      const char* types, Values... values) {
    sd_bus_message* made = nullptr;
    EXPECT_GE(sd_bus_message_new_signal(bus_.get(), &made, path, interface, member), 0);
    const std::unique_ptr<sd_bus_message, Unref> signal(made);
    EXPECT_GE(sd_bus_message_append(made, types, values...), 0);
    EXPECT_GE(sd_bus_send_to(bus_.get(), made, to, nullptr), 0);
}

void FakePortal::emitChange(std::uint32_t scheme, const char* to) {
    send(portalPath, settings, "SettingChanged", to, "ssv", appearance, colorScheme, "u", scheme);
}

void FakePortal::emitChangeOf(const char* group, const char* key, const char* to) {
    send(portalPath, settings, "SettingChanged", to, "ssv", group, key, "s", "prefer-dark");
}

void FakePortal::emitChangeAs(const char* path, const char* interface, const char* member,
                              const char* to) {
    send(path, interface, member, to, "ssv", appearance, colorScheme, "u", 1U);
}

void FakePortal::emitChangeOfShape(const std::function<void(sd_bus_message*)>& fill,
                                   const char* to) {
    sd_bus_message* made = nullptr;
    EXPECT_GE(sd_bus_message_new_signal(bus_.get(), &made, portalPath, settings, "SettingChanged"),
              0);
    const std::unique_ptr<sd_bus_message, Unref> signal(made);
    fill(made);
    EXPECT_GE(sd_bus_send_to(bus_.get(), made, to, nullptr), 0);
}

void FakePortal::emitFlood(int count) {
    for (int sent = 0; sent < count; ++sent) {
        emitChange(static_cast<std::uint32_t>(sent % 3));
        if (sent % 500 == 0) {
            EXPECT_GE(sd_bus_flush(bus_.get()), 0); // what waits to be sent is limited
        }
    }
    finishSending();
}

void FakePortal::forgeDeparture(const char* to) {
    send("/org/freedesktop/DBus", "org.freedesktop.DBus", "NameOwnerChanged", to, "sss", portalName,
         ":1.999", "");
}

void FakePortal::knock(const std::string& at) {
    wasHeard_ = false;
    const auto heard = [](sd_bus_message*, void* self, sd_bus_error*) {
        static_cast<FakePortal*>(self)->wasHeard_ = true;
        return 0;
    };
    EXPECT_GE(sd_bus_call_method_async(bus_.get(), nullptr, at.c_str(), "/", "org.example.Nothing",
                                       "Knock", heard, this, nullptr),
              0);
}

void FakePortal::finishSending() {
    EXPECT_GE(sd_bus_call_method(bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                 "org.freedesktop.DBus", "GetId", nullptr, nullptr, ""),
              0);
}

void FakePortal::process() {
    while (sd_bus_process(bus_.get(), nullptr) > 0) {
    }
}

FakePortal::Answer number(std::uint32_t value, int variants) {
    return [=](sd_bus_message* question) {
        sd_bus_message* reply = nullptr;
        EXPECT_GE(sd_bus_message_new_method_return(question, &reply), 0);
        for (int left = variants; left > 0; --left) {
            EXPECT_GE(sd_bus_message_open_container(reply, 'v', left > 1 ? "v" : "u"), 0);
        }
        EXPECT_GE(sd_bus_message_append(reply, "u", value), 0);
        for (int left = variants; left > 0; --left) {
            EXPECT_GE(sd_bus_message_close_container(reply), 0);
        }
        EXPECT_GE(sd_bus_send(nullptr, reply, nullptr), 0);
        sd_bus_message_unref(reply);
    };
}

FakePortal::Answer error(const char* name) {
    return [=](sd_bus_message* question) {
        EXPECT_GE(sd_bus_reply_method_errorf(question, name, "as the test wants it"), 0);
    };
}

} // namespace zeltest
