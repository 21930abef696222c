// Reads a job file with a small schema of its own and says how many design responses it holds.
#include <ZentuCmdEngine.h>

#include <iostream>
#include <utility>

int main(int argc, char** argv) {
    using ZentuCmdDefs::Cmd;
    using ZentuCmdItemDefs::CmdItem;
    ZentuCmdIoConfig schema;
    schema.AddCmdMetadata("DRESP", ZentuCmdMetaData(Cmd::DRESP, false))
        .AddItem("ID_NAME", ZentuCmdItemMetaData(CmdItem::ID_NAME))
        .AddItem("LOADCASE", ZentuCmdItemMetaData(CmdItem::LOADCASE));
    KPL_LogMacros::SetLogVerbosity(KPL_LogMacros::LOG_ERROR);  // no warnings for the rest
    ZentuCmdContainer job;
    try {
        const std::string path = argc > 1 ? argv[1] : "job.par";
        ZentuParFileAdapter(ZentuFileUtil::from_utf8(path), std::move(schema)).Parse(job);
    } catch (const KPL_Exception& failure) {
        std::cerr << failure.GetMessage() << "\n";
        return 1;
    }
    std::cout << job.GetNumberOfCommands(Cmd::DRESP) << " design responses\n";
}
