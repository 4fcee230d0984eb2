// SPDX-License-Identifier: Apache-2.0
// Without the override an object of the class would be passed over in silence.
#include <ZelStyleKit/ZelStyleKit.h>

class Panel : public zel::NSObject, public zel::ZelStyleable {
public:
#ifndef ZEL_REFUSED
    [[nodiscard]] const zel::ZelStyleable* asZelStyleable() const noexcept override {
        return this;
    }
#endif
    [[nodiscard]] std::optional<std::string> domainIdentifierOfZelStyleable() const override {
        return std::nullopt;
    }
    [[nodiscard]] std::shared_ptr<zel::NSObject> parentZelStyleable() const override {
        return nullptr;
    }
};

std::shared_ptr<zel::NSObject> makePanel();
std::shared_ptr<zel::NSObject> makePanel() {
    return zel::alloc<Panel>();
}
