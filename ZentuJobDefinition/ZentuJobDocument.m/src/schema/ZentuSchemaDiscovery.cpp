#include "ZentuSchemaDiscovery.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "KPL_Failure.h"
#include "ZentuJobDocumentMessages.h"
#include "ZentuJobSchema.h"
#include "ZentuStringUtil.h"

namespace fs = std::filesystem;
namespace Messages = ZentuJobDocumentMessages;

namespace {

// What a comment says after '#' to name the job's schema.
constexpr std::string_view SCHEMA_COMMENT = "zentu-cmd: schema=";

// The text after the comment mark of a comment line, or nothing for another line.
std::optional<std::string> comment_text(std::string_view line) {
    std::string text(line);
    ZentuStringUtil::Trim(text);
    if (text.empty() || text.front() != '#') {
        return std::nullopt;
    }
    text.erase(0, 1);
    ZentuStringUtil::Trim(text);
    return text;
}

// The PATH of the schema comment among the first lines, as written.
std::optional<std::string> commented_path(std::string_view text) {
    std::size_t begin = 0;
    for (std::size_t line = 0; line < ZentuSchemaDiscovery::COMMENT_LINES && begin < text.size();
         ++line) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::optional<std::string> comment = comment_text(text.substr(begin, end - begin));
        if (comment && comment->compare(0, SCHEMA_COMMENT.size(), SCHEMA_COMMENT) == 0) {
            std::string path = comment->substr(SCHEMA_COMMENT.size());
            ZentuStringUtil::Trim(path);
            return path;
        }
        begin = end + 1;
    }
    return std::nullopt;
}

// The folder that a job's relative paths start from.
fs::path folder_of(const std::string& jobPath) {
    const fs::path parent = fs::u8path(jobPath).parent_path();
    return parent.empty() ? fs::path(".") : parent;
}

// The schema that a settings file names, relative to its folder, or nothing when it names none.
std::optional<fs::path> settings_schema(const fs::path& settings) {
    std::ifstream in(settings, std::ios::binary);
    const ZentuJson json = ZentuJson::parse(in, nullptr, false);
    if (json.is_discarded() || !json.is_object()) {
        throw KPL_Failure(
            KPL_Failure::Format(Messages::SETTINGS_NOT_AN_OBJECT, settings.u8string().c_str()),
            Messages::SCHEMA_TAG);
    }
    const auto schema = json.find("schema");
    if (schema == json.end()) {
        return std::nullopt;
    }
    if (!schema->is_string()) {
        throw KPL_Failure(
            KPL_Failure::Format(Messages::SETTINGS_SCHEMA_NOT_TEXT, settings.u8string().c_str()),
            Messages::SCHEMA_TAG);
    }
    return settings.parent_path() / fs::u8path(schema->get<std::string>());
}

// The schema of the nearest settings file above the folder that names one.
std::optional<fs::path> settings_schema_above(const fs::path& folder) {
    std::error_code error;
    fs::path current = fs::absolute(folder, error).lexically_normal();
    while (!error) {
        const fs::path settings = current / ZentuSchemaDiscovery::SETTINGS_FILE;
        std::error_code missing;
        if (fs::is_regular_file(settings, missing)) {
            if (std::optional<fs::path> schema = settings_schema(settings)) {
                return schema;
            }
        }
        if (!current.has_relative_path()) {
            break;
        }
        current = current.parent_path();
    }
    return std::nullopt;
}

// The first lines of a file, enough for the schema comment.
std::string head_of(const std::string& jobPath) {
    std::ifstream in(fs::u8path(jobPath), std::ios::binary);
    std::string head;
    std::string line;
    for (std::size_t count = 0;
         count < ZentuSchemaDiscovery::COMMENT_LINES && std::getline(in, line); ++count) {
        head += line + '\n';
    }
    return head;
}

}  // namespace

std::optional<std::string> ZentuSchemaDiscovery::schema_path(const std::string& jobPath,
                                                             std::string_view text) {
    const fs::path folder = folder_of(jobPath);
    if (const std::optional<std::string> commented = commented_path(text)) {
        return (folder / fs::u8path(*commented)).lexically_normal().u8string();
    }
    if (const std::optional<fs::path> configured = settings_schema_above(folder)) {
        return configured->lexically_normal().u8string();
    }
    return std::nullopt;
}

std::optional<std::string> ZentuSchemaDiscovery::schema_path(const std::string& jobPath) {
    return schema_path(jobPath, head_of(jobPath));
}
