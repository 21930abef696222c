#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdIdentifier.h"
#include "items/ZentuOwnItems.h"
#include "model/ZentuTextIndex.h"

namespace ZentuCmdIdentifier {

// Identifier to the first command that bears it.
using Index = ZentuTextIndex<const ZentuCmd*>;

// Adds the commands of a sequence of command pointers, in its order, to the index; a command
// whose identifier is indexed already, and one without identifier, is passed over. Identifiers
// read in place are added in batches whose index slots are fetched from memory together.
template <typename Sequence>
void add_first_by_identifier(const Sequence& commands, Index& index) {
    struct Pending {
        std::string_view identifier;
        std::uint64_t hash;
        const ZentuCmd* cmd;
    };
    constexpr std::size_t BATCH_SIZE = 16;
    std::vector<Pending> batch;
    const auto flush = [&batch, &index] {
        for (const Pending& pending : batch) {
            index.Add(pending.identifier, pending.hash, pending.cmd);
        }
        batch.clear();
    };
    for (const auto& cmd : commands) {
        const ZentuCmdItem* item = item_of(*cmd);
        if (item == nullptr) {
            continue;
        }
        if (const std::optional<std::string_view> identifier = ZentuOwnItems::TextInPlace(*item)) {
            const std::uint64_t hash = Index::Hash(*identifier);
            index.Prefetch(hash);
            batch.push_back(Pending{*identifier, hash, &*cmd});
            if (batch.size() == BATCH_SIZE) {
                flush();
            }
        } else {
            flush();
            index.Add(item->GetString(), &*cmd);
        }
    }
    flush();
}

}  // namespace ZentuCmdIdentifier
