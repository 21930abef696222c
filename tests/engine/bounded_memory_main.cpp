// Reads, copies and writes a file of a few lines whose integer lists name ten million values each,
// and checks, formats and expands it as the command-line tool does, under a limit of 50 MB of
// address space: what an item holds must follow its text, not its values. A list of three million
// values is dumped as well, which writes each value but holds none.
// Sanitizers reserve far more address space than that, so under them the limit is left out.
#include <sys/resource.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <streambuf>

#include "ZentuCmdContainer.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdParOutput.h"
#include "ZentuJobFiles.h"
#include "ZentuJobFormatter.h"
#include "ZentuJobJson.h"
#include "ZentuParFileAdapter.h"
#include "ZentuTypedJob.h"

namespace {

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;

constexpr rlim_t ADDRESS_SPACE_LIMIT = rlim_t{50} << 20;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool SANITIZED = true;
#elif defined(__has_feature)
constexpr bool SANITIZED = __has_feature(address_sanitizer);
#else
constexpr bool SANITIZED = false;
#endif

// Fails the test with a message.
int fail(const char* message) {
    std::fprintf(stderr, "%s\n", message);
    return 1;
}

// Counts the characters written to it and drops them.
class CountingBuffer : public std::streambuf {
  public:
    std::streamsize written = 0;

  protected:
    int_type overflow(int_type character) override {
        ++written;
        return traits_type::not_eof(character);
    }
    std::streamsize xsputn(const char_type*, std::streamsize count) override {
        written += count;
        return count;
    }
};

}  // namespace

int main() {
    const std::filesystem::path directory = std::filesystem::temp_directory_path();
    const std::filesystem::path input = directory / "zentu_bounded_memory.par";
    const std::filesystem::path output = directory / "zentu_bounded_memory_written.par";
    std::ofstream(input) << "GROUP_DEF\n  ID_NAME = G1\n"
                         << "  ELEMENT_GROUP = 1-9999999\n  ELEMENT_GROUP = 1-9999999\n"
                         << "  ELEMENT_GROUP = 1-9999999\n  ELEMENT_GROUP = 1-9999999\n"
                         << "  ELEMENT_GROUP = 1-9999999\nEND_\n";
    const rlimit limit{ADDRESS_SPACE_LIMIT, ADDRESS_SPACE_LIMIT};
    if (!SANITIZED && setrlimit(RLIMIT_AS, &limit) != 0) {
        return fail("cannot limit the address space");
    }
    ZentuCmdIoConfig config;
    config.AddCmdMetadata("GROUP_DEF", ZentuCmdMetaData(Cmd::GROUP_DEF, false))
        .AddItem("ID_NAME", ZentuCmdItemMetaData(CmdItem::ID_NAME,
                                                 ZentuCmdItemDefs::DataType::STRING, "", "", 1))
        .AddItem("ELEMENT_GROUP",
                 ZentuCmdItemMetaData(CmdItem::ELEMENT_GROUP,
                                      ZentuCmdItemDefs::DataType::BRELT_LIST, "", "", 1));
    ZentuCmdContainer container;
    ZentuParFileAdapter(input.wstring(), std::move(config)).Parse(container);
    ZentuCmd& copy = container.CreateCommand(Cmd::GROUP_DEF);
    copy.CopyItemsFrom(container.GetCommand(Cmd::GROUP_DEF, 0));
    for (const auto& item : copy.Items(CmdItem::ELEMENT_GROUP)) {
        if (!item->HasBreltList() || item->GetString() != "1-9999999") {
            return fail("an item lost its integer-list reading");
        }
    }
    ZentuCmdParOutput(output.wstring(), container, ZentuCmdDefs::get_default_cmd_names(),
                      ZentuCmdItemDefs::CMD_ITEM_NAMES)
        .Write(L"w");
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    const ZentuTypedJob checked =
        ZentuTypedJob::ReadFile(input.string(), schema, ZentuCompletion::FULL);
    if (checked.Findings().size() != 4 ||
        !ZentuJobFormatter::format_document(checked.Document(), schema) ||
        ZentuJobFiles::canonical_text(checked.Container()).empty()) {
        return fail("checking, formatting or expanding went wrong");
    }
    std::ofstream(input) << "GROUP_DEF\n  ID_NAME = G1\n  ELEMENT_GROUP = 1-3000000\nEND_\n";
    CountingBuffer dumped;
    std::ostream dump(&dumped);
    ZentuJobJson::write_job(input.string(),
                            ZentuTypedJob::ReadFile(input.string(), schema, ZentuCompletion::FULL),
                            dump);
    if (dumped.written < 3000000 * 8) {
        return fail("the dump left values out");
    }
    std::filesystem::remove(input);
    std::filesystem::remove(output);
    return copy.Items(CmdItem::ELEMENT_GROUP).size() == 5 ? 0 : fail("items were lost");
}
