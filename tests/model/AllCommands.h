// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/AppearanceCommands.h"
#include "tests/model/DomainCommands.h"
#include "tests/model/ObjectCommands.h"
#include "tests/model/PlayerState.h"
#include "tests/model/ProviderCommands.h"
#include "tests/model/StyleCommands.h"

namespace zeltest {

template <class Kit>
const std::vector<Command<Kit>>& commands() {
    static const auto all = [] {
        std::vector<Command<Kit>> list;
        for (const auto* subject :
             {&lifeCommands<Kit>(), &styleCommands<Kit>(), &domainCommands<Kit>(),
              &deliveryCommands<Kit>(), &objectCommands<Kit>(), &appearanceCommands<Kit>(),
              &managerCommands<Kit>(), &providerCommands<Kit>()}) {
            list.insert(list.end(), subject->begin(), subject->end());
        }
        return list;
    }();
    return all;
}

} // namespace zeltest
