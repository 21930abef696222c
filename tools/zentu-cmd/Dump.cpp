#include "Dump.h"

#include <iostream>

#include "FindingsOutput.h"
#include "Inputs.h"
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

// The line that an origin in the document points at: an item's name, else a command's keyword;
// null for no origin.
json line_of(const ZentuJobDocument& document, const ZentuOrigin& origin) {
    if (origin.command == ZentuOrigin::NONE) {
        return nullptr;
    }
    const ZentuDocumentCommand& command = document.Commands()[origin.command];
    return origin.item == ZentuOrigin::NONE ? command.line : command.items[origin.item].line;
}

// An item as dump writes it; without line when nothing in the file gave rise to it.
json item_entry(CmdItem kind, const ZentuCmdItem& item, json line) {
    json entry = {{"name", item.GetName()},
                  {"kind", ZentuCmdItemDefs::CMD_ITEM_NAMES[static_cast<std::size_t>(kind)]}};
    if (!line.is_null()) {
        entry["line"] = std::move(line);
    }
    entry["text"] = item.GetString();
    entry["readings"] = readings_of(item);
    if (item.HasReference() && item.GetReference() != nullptr) {
        entry["reference"] = identifier_of(*item.GetReference());
    }
    return entry;
}

// An item that the file does not hold takes its command's line, since the command's default or
// rule added it.
json items_of(const ZentuTypedJob& job, const ZentuCmd& command, const json& commandLine) {
    json items = json::array();
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        const auto itemKind = static_cast<CmdItem>(kind);
        for (const auto& item : command.Items(itemKind)) {
            const ZentuOrigin origin = job.OriginOf(command, *item);
            const json line =
                origin.item == ZentuOrigin::NONE ? commandLine : line_of(job.Document(), origin);
            items.push_back(item_entry(itemKind, *item, line));
        }
    }
    return items;
}

// A command with its items as dump writes it; without line when nothing in the file gave rise
// to it, as for a default command.
json command_entry(const ZentuTypedJob& job, const ZentuCmd& command) {
    json entry = {{"kind", ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(command.GetType())]},
                  {"name", command.GetName()},
                  {"identifier", identifier_of(command)}};
    const json line = line_of(job.Document(), job.OriginOf(command));
    if (!line.is_null()) {
        entry["line"] = line;
    }
    entry["items"] = items_of(job, command, line);
    return entry;
}

}  // namespace

json dump_job(const std::string& name, const ZentuTypedJob& job) {
    json commands = json::array();
    for (const ZentuCmd& command : job.Container()) {
        commands.push_back(command_entry(job, command));
    }
    return {{"path", name}, {"commands", commands}};
}

DumpCommand::DumpCommand(CLI::App& app)
    : Subcommand(app.add_subcommand("dump", "Print each completed job as JSON")) {
    command_
        ->add_option("FILE", inputs_,
                     "The job files to read (directories: every *.par below them; - for "
                     "standard input)")
        ->required();
}

int DumpCommand::Run(const RunContext& context) {
    return use_each_job(expand_inputs(inputs_), context.schemas,
                        [](const std::string&, const std::string& name, const InputJob& read) {
                            print_json(dump_job(name, read.job), std::cout);
                        });
}

}  // namespace zentu_cmd
