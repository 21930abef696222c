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

// How many commands ahead of the one at hand a walk over all commands fetches.
constexpr std::size_t PREFETCH_DISTANCE = 4;

// Asks the processor to fetch the command, whose kinds and sequences a walk reads next, so that a
// walk over a large container waits for several commands at once rather than for one at a time.
inline void prefetch(const ZentuCmd& cmd) {
#if defined(__GNUC__)
    const char* bytes = reinterpret_cast<const char*>(&cmd);
    for (std::size_t offset = 0; offset < sizeof(ZentuCmd); offset += 64) {
        __builtin_prefetch(bytes + offset);
    }
#else
    static_cast<void>(cmd);
#endif
}

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
    for (std::size_t position = 0; position < commands.size(); ++position) {
        if (position + PREFETCH_DISTANCE < commands.size()) {
            prefetch(*commands[position + PREFETCH_DISTANCE]);
        }
        const auto& cmd = commands[position];
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
