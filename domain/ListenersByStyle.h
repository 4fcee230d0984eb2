// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/BoundStyles.h"
#include "domain/ChangeHandlers.h"
#include "domain/StyleForest.h"
#include "platform/objects/StylingChanges.h"
#include "platform/views/StyleableTree.h"
#include "style/StyleLookupEpoch.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace zel {
inline namespace v1 {

/// The state of all that decides about which listeners of a table are due. Two that are equal have
/// nothing between them that could have changed that, but for what hosts answer who are asked.
struct ListenerStamp {
    std::uint64_t identifiers, deliveries, links, lookups, places;

    static ListenerStamp now(std::uint64_t places) noexcept {
        return {StylingChanges::now(), StylingChanges::deliveries(),
                ZelStyleableTree::linkChanges(), StyleLookupEpoch::now(), places};
    }
    friend bool operator==(const ListenerStamp&, const ListenerStamp&) noexcept = default;
};

/// A table's listeners by their styles' families. An update delivers to a family of styles, and so
/// does, before it, the update of each style that follows: with many of them, walking over all
/// listeners each time would be quadratic. Used only while a walk over all has shown that each
/// listener has its style, and nothing has changed since. The marked ones of the table, whose
/// parents have to be asked, aren't in it.
/// Refers to: entries of the table. Guarded by the table's lock.
template <class Payload>
class ListenersByStyle {
public:
    using Table = WeakTable<Payload>;

    /// After a walk over all listeners, the table's stamp being the same before it and now.
    void noteWalked(const ListenerStamp& stamp) noexcept { walked_ = stamp; }

    /// Whether `collect` may be asked now; makes the order where that is worth it. May end an owner
    /// that only it held.
    bool isUsable(const std::shared_ptr<Table>& table, BoundStyles& styles);

    /// Puts the listeners whose style is that one or descends from it into the table's scratch.
    void collect(Table& table, const ZelStyle& style) const;

    [[nodiscard]] const StyleForest& forest() const noexcept { return forest_; }

private:
    struct Item {
        std::uint32_t style; ///< its number in the forest
        typename Table::Ordered listener;
    };

    void order(const std::shared_ptr<Table>& table, BoundStyles& styles);

    std::optional<ListenerStamp> walked_;  ///< when the last walk over all found nothing to do
    std::optional<ListenerStamp> ordered_; ///< when what follows was right
    StyleForest forest_;
    std::vector<Item> items_;
    bool isOrdering_ = false; ///< an owner that ends meanwhile may bring about other deliveries
};

extern template class ListenersByStyle<ChangeHandlers>;
extern template class ListenersByStyle<NoPayload>;

} // namespace v1
} // namespace zel
