#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>

#include "KPL_Failure.h"
#include "ZentuSchemaCache.h"
#include "ZentuSchemaDiscovery.h"
#include "zentu_test_cases.h"

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

// The comment among the job's first lines, else the nearest settings that name a schema, else
// none; settings that name no path are refused.
TEST_F(SchemaDiscovery, TheCommentThenTheNearestSettingsThenNone) {
    const auto orNone = [](const std::string& field) { return field == "-" ? "" : field; };
    for (const auto& c : zentu_test::DataCases("document/cases/schema_discovery.txt", 5)) {
        SCOPED_TRACE(c.where + ": " + c.fields[0]);
        for (const auto& [file, settings] : {std::pair("project/jobs/.zentu-cmd.json", c.fields[1]),
                                             std::pair("project/.zentu-cmd.json", c.fields[2])}) {
            fs::remove(root_ / file);
            if (settings != "-") {
                Write(file, settings);
            }
        }
        const std::string job = Path("project/jobs/job.par");
        if (c.fields[4] == "refused") {
            EXPECT_THROW(ZentuSchemaDiscovery::schema_path(job, orNone(c.fields[3])), KPL_Failure);
            continue;
        }
        EXPECT_EQ(ZentuSchemaDiscovery::schema_path(job, orNone(c.fields[3])),
                  c.fields[4] == "-" ? std::nullopt : std::optional(Path(c.fields[4])));
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
