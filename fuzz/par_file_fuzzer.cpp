#include <stdlib.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdContainerRules.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdParOutput.h"
#include "ZentuDrespExpressionParser.h"
#include "ZentuParFile.h"
#include "ZentuParFileAdapter.h"
#include "fuzz_support.h"

namespace {

namespace fs = std::filesystem;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

// The library reads and writes files only, so each input goes through a directory of this
// process's own, made once because creating one per input would cost more than the parse.
class ScratchDirectory {
  public:
    // A fresh name, so that fuzzers running side by side never share files.
    ScratchDirectory() {
        std::string pattern = (fs::temp_directory_path() / "zentu_fuzz_XXXXXX").string();
        zentu_fuzz::Require(mkdtemp(pattern.data()) != nullptr, "a scratch directory is made");
        path_ = pattern;
    }

    // A copy would remove the directory a second time.
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    // Errors are ignored: a leftover file must not turn a clean run into a finding.
    ~ScratchDirectory() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }

    // A file of the directory; it may not exist yet.
    fs::path File(const char* name) const { return path_ / name; }

  private:
    fs::path path_;
};

// Lives until the fuzzer exits, which removes the directory through the destructor.
const ScratchDirectory& Scratch() {
    static const ScratchDirectory scratch;
    return scratch;
}

// A description without a default, the usual shape in a host's schema.
ZentuCmdItemMetaData Typed(CmdItem kind, DataType type) {
    return ZentuCmdItemMetaData(kind, type, "", "", 0);
}

// Every data type that a file can fill, defaults that the rule engine must add, a default
// command, a per-command rule and the expression rule, so that one parse reaches every stage
// of reading and completing.
ZentuCmdIoConfig BuildSchema() {
    ZentuCmdIoConfig config;
    config.AddCmdMetadata("DRESP", ZentuCmdMetaData(Cmd::DRESP, false))
        .AddItem({"ID_NAME", Typed(CmdItem::ID_NAME, DataType::STRING)})
        .AddItem({"TYPE",
                  ZentuCmdItemMetaData(
                      CmdItem::TYPE, {{"DISP_ABS", 8}, {"DISP_X", 17}, {"VOLUME", 146}}, "VOLUME")})
        .AddItem({"GROUP", ZentuCmdItemMetaData(CmdItem::GROUP)})
        .AddItem({"ELEMENT_GROUP", Typed(CmdItem::ELEMENT_GROUP, DataType::BRELT_LIST)})
        .AddItem({"NODE_GROUP", Typed(CmdItem::NODE_GROUP, DataType::LIST)})
        .AddItem({"DIRECTION", Typed(CmdItem::DIRECTION, DataType::VECTOR3D)})
        .AddItem({"DESCRIPTION", Typed(CmdItem::DESCRIPTION, DataType::RAW_STRING)})
        .AddItem({"VALUE", ZentuCmdItemMetaData(CmdItem::VALUE, 1.5, "", 0)})
        .AddItem({"LOADCASE", ZentuCmdItemMetaData(CmdItem::LOADCASE, 1, "", 0)});
    config.AddCmdMetadata("OPERATOR", ZentuCmdMetaData(Cmd::OPERATOR, false))
        .AddItem({"ID_NAME", Typed(CmdItem::ID_NAME, DataType::STRING)})
        .AddItem({"ADD_FILE", Typed(CmdItem::ADD_FILE, DataType::STRING)})
        .AddItem({"REFERENCE", ZentuCmdItemMetaData(CmdItem::REFERENCE, Cmd::DRESP, "")});
    config.AddCmdMetadata("OPT_PARAM", ZentuCmdMetaData(Cmd::OPT_PARAM, true))
        .AddItem({"ITER_MAX", ZentuCmdItemMetaData(CmdItem::ITER_MAX, 10, "", 0)})
        .AddItem({"STRATEGY",
                  ZentuCmdItemMetaData(CmdItem::STRATEGY, {{"MMA", 83}, {"CSA", 84}}, "MMA")});
    config.AddRule(ZentuCmdContainerRules::DefaultValueRule{
        Cmd::OPERATOR,
        [](ZentuCmd& command, const ZentuCmdContainer& container, const ZentuCmdMetaData&,
           const ZentuCmdItemDefs::KeywordMap&) {
            ZentuCmdContainerRules::Rule_AddReferenceToFirstCmd(
                command, container, CmdItem::REFERENCE, "REFERENCE", Cmd::DRESP);
        },
        false});
    config.AddRule(&ZentuDrespExpressionParser::dresp_expression_rule);
    return config;
}

// Built once, as hosts do; each parse takes a copy because the adapter takes its configuration
// over.
const ZentuCmdIoConfig& Schema() {
    static const ZentuCmdIoConfig schema = BuildSchema();
    return schema;
}

// Writes the input as the file under test; the stream is binary so every byte reaches the file.
void WriteInput(const fs::path& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    zentu_fuzz::Require(static_cast<bool>(file), "the input file is written");
}

// Reading may stop with a failure and leave commands behind; those must still be writable,
// because a host may write what it has before it reports the failure.
void ReadAndWrite(const fs::path& input, const fs::path& output) {
    ZentuCmdContainer container;
    zentu_fuzz::Completes([&] {
        ZentuCmdIoConfig config = Schema();
        ZentuParFileAdapter(input.wstring(), std::move(config)).Parse(container);
    });
    ZentuCmdParOutput(output.wstring(), container, ZentuCmdDefs::get_default_cmd_names(),
                      ZentuCmdItemDefs::CMD_ITEM_NAMES)
        .Write(L"w");
}

// Whatever the writer produces is meant to be read again by the same tokenizer.
void RequireReadable(const fs::path& written) {
    zentu_fuzz::Require(zentu_fuzz::Completes([&] { ZentuParFile file(written.wstring()); }),
                        "a written file reads back");
}

}  // namespace

// Runs once before the first input, so that every input meets the same library setup.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    zentu_fuzz::PrepareLibrary();
    static_cast<void>(Scratch());
    static_cast<void>(Schema());
    return 0;
}

// libFuzzer's entry point: any abort, sanitizer report or escaping exception is a finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fs::path input = Scratch().File("input.par");
    const fs::path output = Scratch().File("written.par");
    const std::string text = zentu_fuzz::TextOf(data, size);
    WriteInput(input, text);
    zentu_fuzz::Completes([&] { ZentuParFile file(input.wstring()); });
    ReadAndWrite(input, output);
    // The writer cuts each line at its first NUL, as "%s" does: a value whose lines hold
    // "END_\0..." is written with a line END_ that closes its command early. Only a text without
    // NUL bytes must read back.
    if (text.find('\0') == std::string::npos) {
        RequireReadable(output);
    }
    return 0;
}
