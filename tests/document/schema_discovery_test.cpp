#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>

#include "KPL_Failure.h"
#include "ZentuSchemaCache.h"
#include "ZentuSchemaDiscovery.h"

namespace fs = std::filesystem;

namespace {

// A folder tree of its own per test, removed afterwards.
class SchemaDiscovery : public testing::Test {
  protected:
    void SetUp() override {
        root_ = fs::temp_directory_path() /
                ("zentu-discovery-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        fs::create_directories(root_ / "project" / "jobs");
    }
    void TearDown() override { fs::remove_all(root_); }

    void Write(const std::string& relative, const std::string& text) const {
        std::ofstream(root_ / relative, std::ios::binary) << text;
    }
    std::string Path(const std::string& relative) const { return (root_ / relative).string(); }

    fs::path root_;
};

TEST_F(SchemaDiscovery, TheCommentThenTheNearestSettingsThenNone) {
    const std::string job = "project/jobs/job.par";
    const std::string tenBlankLines(10, '\n');
    const struct {
        std::map<std::string, std::string> files;
        std::string text;
        std::optional<std::string> schema;
    } cases[] = {
        {{}, "", std::nullopt},
        {{}, "# first line\n  #  zentu-cmd: schema= ../own.json \nDV\n", "project/own.json"},
        {{}, tenBlankLines + "# zentu-cmd: schema=late.json\n", std::nullopt},
        {{{"project/.zentu-cmd.json", R"({"schema": "shared.json"})"}}, "", "project/shared.json"},
        {{{"project/.zentu-cmd.json", R"({"schema": "shared.json"})"},
          {"project/jobs/.zentu-cmd.json", R"({"other": 1})"}},
         "",
         "project/shared.json"},
        {{{"project/jobs/.zentu-cmd.json", R"({"schema": "near.json"})"},
          {"project/.zentu-cmd.json", R"({"schema": "far.json"})"}},
         "",
         "project/jobs/near.json"},
        {{{"project/jobs/.zentu-cmd.json", R"({"schema": "near.json"})"}},
         "# zentu-cmd: schema=mine.json\n",
         "project/jobs/mine.json"},
    };
    for (const auto& test : cases) {
        fs::remove(root_ / "project" / ".zentu-cmd.json");
        fs::remove(root_ / "project" / "jobs" / ".zentu-cmd.json");
        for (const auto& [file, text] : test.files) {
            Write(file, text);
        }
        const auto found = ZentuSchemaDiscovery::schema_path(Path(job), test.text);
        EXPECT_EQ(found,
                  test.schema ? std::optional<std::string>(Path(*test.schema)) : std::nullopt)
            << test.text;
    }
}

TEST_F(SchemaDiscovery, RefusesSettingsThatNameNoPath) {
    for (const char* settings : {"[1]", "{\"schema\": 3}", "{"}) {
        Write("project/.zentu-cmd.json", settings);
        EXPECT_THROW(ZentuSchemaDiscovery::schema_path(Path("project/job.par"), ""), KPL_Failure)
            << settings;
    }
}

TEST_F(SchemaDiscovery, TheCacheLoadsEachSchemaOnceAndTheOverrideServesAll) {
    Write("project/s.json", ZentuJobSchema::Builtin().ToJson().dump());
    const std::string comment = "# zentu-cmd: schema=s.json\n";
    ZentuSchemaCache cache;
    const ZentuJobSchema& named = cache.For(Path("project/a.par"), comment);
    EXPECT_EQ(&named, &cache.For(Path("project/jobs/../b.par"), comment));
    EXPECT_NE(&named, &cache.For(Path("project/c.par"), ""));
    ZentuSchemaCache overridden(Path("project/s.json"));
    EXPECT_EQ(&overridden.Default(),
              &overridden.For(Path("project/jobs/d.par"), "# zentu-cmd: schema=x\n"));
}

}  // namespace
