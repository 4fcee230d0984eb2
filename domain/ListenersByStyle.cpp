// SPDX-License-Identifier: Apache-2.0
#include "domain/ListenersByStyle.h"

#include <algorithm>

namespace zel {
inline namespace v1 {

template <class Payload>
bool ListenersByStyle<Payload>::isUsable(const std::shared_ptr<Table>& table, BoundStyles& styles) {
    const ListenerStamp now = ListenerStamp::now(table->places());
    if (ordered_ == now) {
        return true;
    }
    if (walked_ != now || isOrdering_) {
        return false;
    }
    isOrdering_ = true;
    bool isOrdered = false;
    try {
        order(table, styles);
        isOrdered = ListenerStamp::now(table->places()) == now;
    } catch (...) { // no memory: a walk over all needs none
    }
    isOrdering_ = false;
    ordered_ = isOrdered ? std::optional(now) : std::nullopt;
    return isOrdered;
}

template <class Payload>
void ListenersByStyle<Payload>::collect(Table& table, const ZelStyle& style) const {
    const StyleForest::Family family = forest_.familyOf(style);
    auto item = std::lower_bound(
        items_.begin(), items_.end(), family.begin,
        [](const Item& each, std::uint32_t number) { return each.style < number; });
    for (; item != items_.end() && item->style < family.end; ++item) {
        table.scratch.push_back(item->listener);
    }
}

template <class Payload>
void ListenersByStyle<Payload>::order(const std::shared_ptr<Table>& table, BoundStyles& styles) {
    ordered_.reset();
    items_.clear();
    forest_.clear();
    typename Table::Walk walk(table);
    auto marked = table->marked().begin();
    while (auto* entry = walk.next()) {
        while (marked != table->marked().end() && (*marked)->order < entry->order) {
            ++marked;
        }
        if (marked != table->marked().end() && *marked == entry) {
            continue;
        }
        if (const auto& style = styles.find(styleBindingOf(*walk.owner(), *entry->state)).style) {
            items_.push_back({forest_.add(style), {entry, entry->order}});
        }
    }
    forest_.number();
    for (Item& item : items_) {
        item.style = forest_.numberAt(item.style);
    }
    std::sort(items_.begin(), items_.end(), [](const Item& a, const Item& b) {
        return a.style != b.style ? a.style < b.style : a.listener.order < b.listener.order;
    });
}

template class ListenersByStyle<ChangeHandlers>;
template class ListenersByStyle<NoPayload>;

} // namespace v1
} // namespace zel
