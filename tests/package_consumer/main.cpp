// Builds a small job in memory through the installed headers and libraries and checks that
// classes, type information, failures and rule functions cross the library boundary.
#include <ZentuCmdEngine.h>

#include <cstdio>
#include <string>

namespace {

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::KeywordMap;

// What the rules below did, in the order they ran.
std::string g_ran;

void MarkGroups(ZentuCmdContainer&, const KeywordMap&) {
    g_ran += "container ";
}

void MarkDv(ZentuCmd& command, const ZentuCmdContainer&, const ZentuCmdMetaData&,
            const KeywordMap&) {
    g_ran += "dv:" + command.GetName() + " ";
}

// Rules kept in a table of plain function pointers, as hosts do.
constexpr ZentuCmdContainerRules::ContainerManipulatorRule kContainerRules[] = {&MarkGroups};

// Registers rules as pointers, finds them again by comparison and runs them in their order.
bool RulesArePlainPointers(ZentuCmdContainer& container) {
    ZentuCmdIoConfig config;
    config.AddCmdMetadata("DV_TOPO", ZentuCmdMetaData(Cmd::DV, false));
    config.AddRule(ZentuCmdContainerRules::DefaultValueRule{Cmd::DV, &MarkDv, false});
    config.AddRule(kContainerRules[0]);
    const bool stored = config.GetDefaultValueRules()[0].func == &MarkDv &&
                        config.GetContainerManipulatorRules()[0] == &MarkGroups;
    ZentuCmdContainerRules::apply_rules(container, config);
    return stored && g_ran == "dv:DV_TOPO container ";
}

// The version macros come with the package and agree with each other.
static_assert(ZENTU_CMD_ENGINE_VERSION == ZENTU_CMD_ENGINE_VERSION_MAJOR * 10000 +
                                              ZENTU_CMD_ENGINE_VERSION_MINOR * 100 +
                                              ZENTU_CMD_ENGINE_VERSION_PATCH);

}  // namespace

int main() {
    ZentuCmdContainer container;
    ZentuCmd& group = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "g1");
    ZentuCmd& dv = container.CreateCommand(Cmd::DV, "DV_TOPO", "d1");
    dv.AddItem(CmdItem::GROUP, group);
    container.CreateReferences();

    const auto* reference = dynamic_cast<const ZentuCmdReferenceItem*>(&dv.Item(CmdItem::GROUP, 0));
    bool caught = false;
    try {
        throw KPL_Failure("consumer check", "|%P|Consumer|main");
    } catch (const KPL_Exception& failure) {
        caught = failure.GetTypeName() == "KPL_Failure" && failure.GetErrorCode() == -14;
    }
    const bool ok = reference != nullptr && reference->GetReference() == &group &&
                    reference->GetString() == "G1" && caught && RulesArePlainPointers(container);
    std::printf("package consumer %s: %s\n", ZENTU_CMD_ENGINE_VERSION_STRING, ok ? "ok" : "FAILED");
    return ok ? 0 : 1;
}
