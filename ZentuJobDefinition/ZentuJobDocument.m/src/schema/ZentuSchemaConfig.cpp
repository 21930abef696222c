#include "ZentuJobSchema.h"

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

}  // namespace

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
