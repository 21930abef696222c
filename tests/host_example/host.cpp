// Reads a job file with a schema of three commands and says how many commands it holds.
#include <ZentuCmdEngine.h>

#include <iostream>
#include <iterator>
#include <utility>

int main(int argc, char** argv) {
    using ZentuCmdDefs::Cmd;
    using ZentuCmdItemDefs::CmdItem;
    using ZentuCmdItemDefs::DataType;
    if (argc != 2) {
        std::cerr << "usage: host FILE.par\n";
        return 2;
    }
    ZentuCmdIoConfig schema;
    schema.AddCmdMetadata("DRESP", ZentuCmdMetaData(Cmd::DRESP, false))
        .AddItem("ID_NAME", ZentuCmdItemMetaData(CmdItem::ID_NAME, DataType::STRING, "", "", 1))
        .AddItem("LOADCASE",
                 ZentuCmdItemMetaData(CmdItem::LOADCASE, DataType::BRELT_LIST, "", "", 1));
    schema.AddCmdMetadata("OBJ_FUNC", ZentuCmdMetaData(Cmd::OBJ_FUNC, false));
    schema.AddCmdMetadata("STOP", ZentuCmdMetaData(Cmd::STOP, true));
    // Commands and items that this small schema does not describe each draw a warning.
    KPL_LogMacros::SetLogVerbosity(KPL_LogMacros::LOG_ERROR);
    ZentuCmdContainer job;
    try {
        ZentuParFileAdapter(ZentuFileUtil::from_utf8(argv[1]), std::move(schema)).Parse(job);
    } catch (const KPL_Exception& failure) {
        std::cerr << failure.GetMessage() << "\n";
        return 1;
    }
    std::cout << argv[1] << ": " << std::distance(job.begin(), job.end()) << " commands, "
              << job.GetNumberOfCommands(Cmd::DRESP) << " design responses\n";
}
