#include "ZentuSchemaCache.h"

#include <utility>

#include "ZentuSchemaDiscovery.h"

ZentuSchemaCache::ZentuSchemaCache(std::optional<std::string> overridePath)
    : override_(std::move(overridePath)) {}

const ZentuJobSchema& ZentuSchemaCache::For(const std::string& jobPath, std::string_view text) {
    return override_ ? Default() : Loaded(ZentuSchemaDiscovery::schema_path(jobPath, text));
}

const ZentuJobSchema& ZentuSchemaCache::For(const std::string& jobPath) {
    return override_ ? Default() : Loaded(ZentuSchemaDiscovery::schema_path(jobPath));
}

const ZentuJobSchema& ZentuSchemaCache::Default() {
    return Loaded(override_);
}

const ZentuJobSchema& ZentuSchemaCache::Loaded(const std::optional<std::string>& path) {
    const std::string key = path.value_or(std::string());
    auto found = schemas_.find(key);
    if (found == schemas_.end()) {
        found =
            schemas_.emplace(key, path ? ZentuJobSchema::Load(*path) : ZentuJobSchema::Builtin())
                .first;
    }
    return found->second;
}
