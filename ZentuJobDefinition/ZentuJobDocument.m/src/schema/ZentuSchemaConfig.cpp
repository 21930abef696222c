#include "ZentuJobSchema.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <tuple>

#include "ZentuCmdMetaData.h"

// Turning a schema into the library's configuration of commands, items and rules.

using ZentuCmdItemDefs::DataType;

namespace {

using ItemSchema = ZentuItemSchema;
using CommandSchema = ZentuCommandSchema;
using Completion = ZentuCompletion;

// The library's description of an item; its default only where the job is completed fully.
ZentuCmdItemMetaData item_metadata(const ItemSchema& item, Completion completion) {
    const bool withDefault = completion == Completion::FULL && !item.default_value.is_null();
    switch (item.type) {
        case DataType::INTEGER:
            return withDefault
                       ? ZentuCmdItemMetaData(item.kind, item.default_value.get<int>(), "", 1)
                       : ZentuCmdItemMetaData(item.kind, item.type, "", "", 1);
        case DataType::REAL:
            return withDefault
                       ? ZentuCmdItemMetaData(item.kind, item.default_value.get<double>(), "", 1)
                       : ZentuCmdItemMetaData(item.kind, item.type, "", "", 1);
        case DataType::REFERENCE:
            return ZentuCmdItemMetaData(item.kind, item.references, "");
        case DataType::ENUM: {
            ZentuCmdItemMetaData metadata(item.kind, {},
                                          withDefault ? item.default_value.get<std::string>() : "");
            for (const auto& [keyword, value] : item.keywords) {
                metadata.keywords.Insert(keyword.c_str(), value);
            }
            return metadata;
        }
        default:
            return ZentuCmdItemMetaData(item.kind, item.type,
                                        withDefault ? item.default_value.get<std::string>() : "",
                                        "", 1);
    }
}

// Whether two item descriptions give the same configuration: they agree on everything that
// item_metadata reads.
bool items_configure_alike(const ItemSchema& a, const ItemSchema& b) {
    return std::tie(a.name, a.kind, a.type, a.default_value, a.keywords, a.references) ==
           std::tie(b.name, b.kind, b.type, b.default_value, b.keywords, b.references);
}

// Whether two lists of commands give the same configuration: they agree on everything that
// BuildConfig reads.
bool commands_configure_alike(const std::vector<CommandSchema>& a,
                              const std::vector<CommandSchema>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const CommandSchema& x, const CommandSchema& y) {
                          return std::tie(x.keyword, x.kind, x.create_default) ==
                                     std::tie(y.keyword, y.kind, y.create_default) &&
                                 std::equal(x.items.begin(), x.items.end(), y.items.begin(),
                                            y.items.end(), items_configure_alike);
                      });
}

}  // namespace

// One configuration per completion, each with the commands it was built from; the rules that a
// configuration holds are bound once per schema and shared by its copies, so only the commands,
// which a host may change, decide whether a configuration still serves.
struct ZentuJobSchema::ConfigCache {
    struct Entry {
        std::vector<ZentuCommandSchema> commands;
        std::shared_ptr<const ZentuCmdIoConfig> config;
    };
    std::mutex mutex;
    std::array<Entry, 2> entries;
};

ZentuJobSchema::ZentuJobSchema() : configs_(std::make_shared<ConfigCache>()) {}

std::shared_ptr<const ZentuCmdIoConfig> ZentuJobSchema::SharedConfig(Completion completion) const {
    if (configs_ == nullptr) {
        // A schema moved from has given its cache away.
        return std::make_shared<const ZentuCmdIoConfig>(BuildConfig(completion));
    }
    ConfigCache::Entry& entry = configs_->entries[completion == Completion::FULL ? 0 : 1];
    const std::lock_guard<std::mutex> lock(configs_->mutex);
    if (entry.config == nullptr || !commands_configure_alike(entry.commands, commands)) {
        entry.config = std::make_shared<const ZentuCmdIoConfig>(BuildConfig(completion));
        entry.commands = commands;
    }
    return entry.config;
}

ZentuCmdIoConfig ZentuJobSchema::BuildConfig(Completion completion) const {
    const ZentuJobSchema& schema = *this;
    ZentuCmdIoConfig config;
    for (const CommandSchema& command : schema.commands) {
        ZentuCmdMetaData::ItemMap items;
        for (const ItemSchema& item : command.items) {
            items.emplace(item.name, item_metadata(item, completion));
        }
        config.AddCmdMetadata(command.keyword, ZentuCmdMetaData(command.kind, std::move(items),
                                                                completion == Completion::FULL &&
                                                                    command.create_default));
    }
    if (completion == Completion::FULL) {
        for (const auto& add : ruleAdders_) {
            add(config);
        }
    }
    return config;
}
