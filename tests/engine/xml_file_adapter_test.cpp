// The XML adapter reads nothing: whatever the file holds and however the adapter was made, the
// container keeps every command and item it had.
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdMetaData.h"
#include "ZentuXmlFileAdapter.h"

namespace {

namespace fs = std::filesystem;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;

// Commands and items by address and by what they answer, so neither a replacement nor an
// edit in place goes unnoticed.
struct Entry {
    const void* address;
    std::string name;
    std::string text;

    bool operator==(const Entry& other) const {
        return address == other.address && name == other.name && text == other.text;
    }
};

std::vector<Entry> Snapshot(const ZentuCmdContainer& container) {
    std::vector<Entry> entries;
    for (const ZentuCmd& cmd : container) {
        entries.push_back({&cmd, cmd.GetName(), std::to_string(static_cast<int>(cmd.GetType()))});
        for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
            for (const auto& item : cmd.Items(static_cast<CmdItem>(kind))) {
                entries.push_back({item.get(), item->GetName(), item->GetString()});
            }
        }
    }
    return entries;
}

class XmlFileAdapterTest : public ::testing::Test {
  protected:
    void SetUp() override {
        std::random_device seed;
        dir_ = fs::temp_directory_path() / ("zentu_xml_adapter_" + std::to_string(seed()));
        ASSERT_TRUE(fs::create_directory(dir_));
        // A file that a reader would find commands in, had the adapter one.
        std::ofstream(path()) << "<job>\n  <DRESP ID_NAME=\"D3\"/>\n  <OPTIMIZE/>\n</job>\n";
        config_.AddCmdMetadata("DRESP", ZentuCmdMetaData(Cmd::DRESP, true));
    }

    void TearDown() override { fs::remove_all(dir_); }

    fs::path path() const { return dir_ / "job.xml"; }

    // Parses into a container that holds a small job and expects it back as it was.
    void ExpectUnchanged(ZentuXmlFileAdapter& adapter) {
        ZentuCmdContainer container;
        const ZentuCmd& response = container.CreateCommand(Cmd::DRESP, "DRESP", "d1");
        container.CreateCommand(Cmd::OPTIMIZE).AddItem(CmdItem::DRESP, response);
        container.CreateCommand(Cmd::CMD_PLACEHOLDER, "FEM_INPUT")
            .AddStringItem(CmdItem::FILE, "model.fem");
        const std::vector<Entry> before = Snapshot(container);

        adapter.Parse(container);
        EXPECT_EQ(Snapshot(container), before);
    }

    fs::path dir_;
    ZentuCmdIoConfig config_;
};

TEST_F(XmlFileAdapterTest, ParseLeavesAnEmptyContainerEmpty) {
    ZentuXmlFileAdapter adapter(path().wstring(), config_);
    ZentuCmdContainer container;
    adapter.Parse(container);
    EXPECT_TRUE(container.begin() == container.end());
}

TEST_F(XmlFileAdapterTest, ParseLeavesCommandsAndItemsAsTheyWere) {
    ZentuXmlFileAdapter adapter(path().wstring(), config_);
    ExpectUnchanged(adapter);
    // Parsing again reads nothing either.
    ExpectUnchanged(adapter);
}

TEST_F(XmlFileAdapterTest, MissingFileIsNoFailure) {
    ZentuXmlFileAdapter adapter((dir_ / "absent.xml").wstring(), config_);
    ExpectUnchanged(adapter);
}

TEST_F(XmlFileAdapterTest, CopiedAndMovedAdaptersAlsoReadNothing) {
    ZentuXmlFileAdapter original(path().wstring(), config_);
    ZentuXmlFileAdapter copy(original);
    ZentuXmlFileAdapter moved(std::move(original));
    ExpectUnchanged(copy);
    ExpectUnchanged(moved);
}

}  // namespace
