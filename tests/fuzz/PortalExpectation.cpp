// SPDX-License-Identifier: Apache-2.0
#include "tests/fuzz/PortalExpectation.h"

#include "integrations/portal/PortalNames.h"

namespace zelfuzz {

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

void Expectation::leave() {
    const bool hasAnswer = status == Status::Following || status == Status::Lost;
    status = hasAnswer ? Status::Lost : Status::NoPortal;
    scheme = status == Status::Lost ? scheme : std::nullopt;
}

void Expectation::take(const Reply& reply) {
    if (owner && reply.sender != *owner && reply.sender != zel::busName) {
        return; // no longer the portal: as if it had never come
    }
    if (reply.error.empty()) {
        status = Status::Following;
        scheme = schemeOf(reply.values);
    } else if (reply.sender == zel::busName) {
        leave();
    } else {
        status = Status::NoAnswer;
        scheme.reset();
    }
    if (!owner && reply.sender.starts_with(':')) {
        owner = reply.sender;
    }
}

void Expectation::hearOfChange(const Values& values, const std::string& sender) {
    const bool isHeard = sender.starts_with(':') || sender == zel::portalName;
    if (isHeard && (!owner || *owner == sender) && values.size() >= 2 && values[0].type == 's' &&
        values[0].text == zel::appearanceNamespace && values[1].type == 's' &&
        values[1].text == zel::colorSchemeKey) {
        ++questions;
    }
}

void Expectation::hearOfOwner(const Values& values, const std::string& sender) {
    if (sender != zel::busName || values.size() < 3 || values[0].type != 's' ||
        values[1].type != 's' || values[2].type != 's' || values[0].text != zel::portalName) {
        return;
    }
    owner = values[2].text;
    if (!owner->empty()) {
        ++questions;
    } else if (status != Status::Connecting) {
        leave();
    }
}

} // namespace zelfuzz
