// Builds a small job in memory through the installed headers and libraries and checks that
// classes, type information and failures cross the library boundary.
#include <ZentuCmdEngine.h>

#include <cstdio>

int main() {
    using ZentuCmdDefs::Cmd;
    using ZentuCmdItemDefs::CmdItem;

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
                    reference->GetString() == "G1" && caught;
    std::printf("package consumer: %s\n", ok ? "ok" : "FAILED");
    return ok ? 0 : 1;
}
