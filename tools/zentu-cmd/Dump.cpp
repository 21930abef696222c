#include "Dump.h"

#include <iostream>

#include "JobFiles.h"

#include "ZentuCmd.h"
#include "ZentuCmdItem.h"

using json = nlohmann::ordered_json;
using ZentuCmdItemDefs::CmdItem;

namespace zentu_cmd {

namespace {

json identifier_of(const ZentuCmd& command) {
    return command.HasItem(CmdItem::ID_NAME, 0)
               ? json(command.Item(CmdItem::ID_NAME, 0).GetString())
               : json(nullptr);
}

json vector_of(const ZentuCmdItem& item) {
    const ZentuMatrix<3, 1, double> vector = item.GetVector3d();
    return json::array({vector(0, 0), vector(1, 0), vector(2, 0)});
}

json integer_list_of(const ZentuCmdItem& item) {
    json values = json::array();
    for (int value : item.GetBreltList()) {
        values.push_back(value);
    }
    return values;
}

// Every reading that the item answers to, under the name of its data type in lower case.
json readings_of(const ZentuCmdItem& item) {
    json readings = json::object();
    if (item.HasInteger()) {
        readings["integer"] = item.GetInteger();
    }
    if (item.HasReal()) {
        readings["real"] = item.GetReal();
    }
    if (item.HasVector3d()) {
        readings["vector3d"] = vector_of(item);
    }
    if (item.HasEnum()) {
        readings["enum"] = static_cast<int>(item.GetEnum());
    }
    if (item.HasList()) {
        readings["list"] = item.GetList();
    }
    if (item.HasBreltList()) {
        readings["integer_list"] = integer_list_of(item);
    }
    return readings;
}

json item_entry(CmdItem kind, const ZentuCmdItem& item) {
    json entry = {{"name", item.GetName()},
                  {"kind", ZentuCmdItemDefs::CMD_ITEM_NAMES[static_cast<std::size_t>(kind)]},
                  {"text", item.GetString()},
                  {"readings", readings_of(item)}};
    if (item.HasReference() && item.GetReference() != nullptr) {
        entry["reference"] = identifier_of(*item.GetReference());
    }
    return entry;
}

}  // namespace

json dump_container(const ZentuCmdContainer& container) {
    json commands = json::array();
    for (const ZentuCmd& command : container) {
        json items = json::array();
        for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
            const auto itemKind = static_cast<CmdItem>(kind);
            for (const auto& item : command.Items(itemKind)) {
                items.push_back(item_entry(itemKind, *item));
            }
        }
        commands.push_back(
            {{"kind", ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(command.GetType())]},
             {"name", command.GetName()},
             {"identifier", identifier_of(command)},
             {"items", items}});
    }
    return {{"commands", commands}};
}

DumpCommand::DumpCommand(CLI::App& app)
    : Subcommand(app.add_subcommand("dump", "Print the completed job as JSON")) {
    command_->add_option("FILE", input_, "The job file to read")->required();
}

int DumpCommand::Run(const RunContext& context) {
    std::cout << dump_container(read_job(input_, context.schema, ZentuCompletion::FULL)).dump(2)
              << "\n";
    return 0;
}

}  // namespace zentu_cmd
