// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/fuzz/Require.h"

#include "platform/text/TextWords.h"

#include <string>
#include <unordered_set>
#include <vector>

namespace zelfuzz {

/// The attribute keys of a run. The library keeps every key ever written for good, as a program has
/// only so many; a fuzzer hasn't. Once so many bytes are spent, a new key becomes one of the old.
class KeyBudget {
public:
    static KeyBudget& shared() {
        static KeyBudget& budget = *new KeyBudget; // as long as the library keeps them
        return budget;
    }

    /// The key, or one in its place; it stays valid.
    const std::string& spend(const std::string& key) {
        checkWords(key);
        constexpr std::size_t most = std::size_t{128} << 20;
        if (const auto known = keys_.find(key); known != keys_.end()) {
            return *known;
        }
        if (spent_ + key.size() > most) {
            return *order_[zel::TextWords::hashOf(key) % order_.size()];
        }
        constexpr std::size_t overhead = 512; // of a key here and in the library, in bytes
        spent_ += key.size() + overhead;
        order_.push_back(&*keys_.insert(key).first);
        return *order_.back();
    }

private:
    /// Equal texts have equal hashes wherever they lie, and are the same; others are not.
    static void checkWords(const std::string& key) {
        const std::string shifted = ' ' + key;
        const std::string_view copy = std::string_view(shifted).substr(1);
        require(zel::TextWords::hashOf(copy) == zel::TextWords::hashOf(key),
                "equal keys hash alike", key);
        require(zel::TextWords::isSame(copy, key), "equal keys are the same", key);
        for (std::size_t at = 0; at < key.size() && at < 32; ++at) {
            std::string other = key;
            other[at] = static_cast<char>(other[at] ^ 0x20);
            require(!zel::TextWords::isSame(other, key), "other keys are not the same", key);
        }
        require(!zel::TextWords::isSame(shifted, key), "a longer key is not the same", key);
    }

    std::unordered_set<std::string> keys_; // which doesn't move them
    std::vector<const std::string*> order_;
    std::size_t spent_ = 0;
};

} // namespace zelfuzz
