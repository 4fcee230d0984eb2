// SPDX-License-Identifier: Apache-2.0
#include "tests/fuzz/PortalExpectation.h"

#include "integrations/portal/PortalNames.h"

namespace zelfuzz {
namespace {

/// In whose name a library tells its own host of its own connection: from outside, nobody may use
/// it, and what comes in it is dropped unread.
constexpr const char* localName = "org.freedesktop.DBus.Local";

} // namespace

std::optional<std::uint32_t> schemeOf(const Values& values) {
    if (values.size() != 1) {
        return std::nullopt;
    }
    const BusValue* value = &values.front();
    int variants = 0;
    while (value->type == 'v') {
        value = &value->parts.front();
        ++variants;
    }
    return value->type == 'u' && variants >= 1 && variants <= 8
               ? std::optional(static_cast<std::uint32_t>(value->integer))
               : std::nullopt;
}

void Expectation::ask() {
    ++questions;
    halvesLeft_ = 2;
    mustAskAgain_ = false;
}

void Expectation::askSoon() {
    if (halvesLeft_ > 0) {
        mustAskAgain_ = true;
    } else {
        ask();
    }
}

void Expectation::waitNoMore() {
    halvesLeft_ = 0;
    if (mustAskAgain_) {
        ask();
    }
}

void Expectation::leave() {
    const bool hasAnswer = status == Status::Following || status == Status::Lost;
    status = hasAnswer ? Status::Lost : Status::NoPortal;
}

void Expectation::getNoAnswer() {
    status = Status::NoAnswer;
    scheme.reset();
}

void Expectation::take(int question, const Reply& reply) {
    const bool isFromBus = reply.sender == zel::busName;
    const bool isOfThePast =
        question != questions || (owner && reply.sender != *owner && !isFromBus);
    if (isOfThePast || reply.sender == localName) {
        return; // as if it had never come
    }
    if (reply.error.empty()) {
        status = Status::Following;
        scheme = schemeOf(reply.values);
    } else if (isFromBus) {
        leave();
    } else {
        getNoAnswer();
    }
    if (!owner && reply.sender.starts_with(':')) {
        owner = reply.sender;
    }
    waitNoMore();
}

void Expectation::waitForHalfTheTime() {
    if (halvesLeft_ == 0 || --halvesLeft_ > 0) {
        return;
    }
    if (owner && owner->empty()) {
        leave();
    } else {
        getNoAnswer();
    }
    waitNoMore();
}

void Expectation::hear(const SignalName& name, const Values& values, const std::string& sender) {
    if (name == settingChanged) {
        hearOfChange(values, sender);
    } else if (name == nameOwnerChanged) {
        hearOfOwner(values, sender);
    }
}

void Expectation::hearOfChange(const Values& values, const std::string& sender) {
    const bool isHeard = sender.starts_with(':') || sender == zel::portalName;
    if (isHeard && (!owner || *owner == sender) && values.size() >= 2 && values[0].type == 's' &&
        values[0].text == zel::appearanceNamespace && values[1].type == 's' &&
        values[1].text == zel::colorSchemeKey) {
        askSoon();
    }
}

void Expectation::hearOfOwner(const Values& values, const std::string& sender) {
    if (sender != zel::busName || values.size() < 3 || values[0].type != 's' ||
        values[1].type != 's' || values[2].type != 's' || values[0].text != zel::portalName) {
        return;
    }
    owner = values[2].text;
    if (!owner->empty()) {
        ask(); // though another's answer may be under way
    } else if (status != Status::Connecting) {
        leave();
    }
}

} // namespace zelfuzz
