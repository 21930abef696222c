#include "ZentuJobSchema.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <set>

#include "KPL_Failure.h"
#include "ZentuJobDocumentMessages.h"
#include "ZentuRuleCatalog.h"

// Reading a schema document and refusing, with the entry at fault named, what it must not say.

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

namespace {

using Json = ZentuJson;
using ItemSchema = ZentuItemSchema;
using CommandSchema = ZentuCommandSchema;
using RuleSchema = ZentuRuleSchema;

// Throws the failure that every refused schema ends in.
[[noreturn]] void fail(const std::string& message) {
    throw KPL_Failure(message, ZentuJobDocumentMessages::SCHEMA_TAG);
}

// Where in a schema document an entry stands, for messages that point the user at it.
class EntryPath {
  public:
    explicit EntryPath(std::string source) : text_(std::move(source)) {}

    EntryPath Child(const std::string& list, std::size_t index, const std::string& name) const {
        EntryPath child = *this;
        child.text_ += (child.text_.empty() ? "" : ": ") + list + "[" + std::to_string(index) + "]";
        if (!name.empty()) {
            child.text_ += " (" + name + ")";
        }
        return child;
    }

    [[noreturn]] void Fail(const std::string& reason) const { fail(text_ + ": " + reason); }

  private:
    std::string text_;
};

std::string joined(const std::string* first, const std::string* last) {
    std::string text;
    for (const std::string* name = first; name != last; ++name) {
        text += (text.empty() ? "" : ", ") + *name;
    }
    return text;
}

template <typename Enum, std::size_t N>
Enum enum_named(const std::array<std::string, N>& names, const Json& value, const char* what,
                const EntryPath& path) {
    if (value.is_string()) {
        const auto found = std::find(names.begin(), names.end(), value.get<std::string>());
        if (found != names.end()) {
            return static_cast<Enum>(found - names.begin());
        }
    }
    path.Fail("unknown " + std::string(what) + " " + value.dump() + " (expected one of " +
              joined(names.data(), names.data() + N) + ")");
}

const Json& required(const Json& object, const char* field, const EntryPath& path) {
    const auto found = object.find(field);
    if (found == object.end()) {
        path.Fail(std::string("missing \"") + field + "\"");
    }
    return *found;
}

std::string text_field(const Json& object, const char* field, const EntryPath& path,
                       bool mandatory) {
    const auto found = object.find(field);
    if (found == object.end()) {
        if (mandatory) {
            path.Fail(std::string("missing \"") + field + "\"");
        }
        return {};
    }
    if (!found->is_string()) {
        path.Fail(std::string("\"") + field + "\" must be a text");
    }
    return found->get<std::string>();
}

void reject_unknown_fields(const Json& object, std::initializer_list<const char*> known,
                           const EntryPath& path) {
    for (const auto& [field, value] : object.items()) {
        if (std::none_of(known.begin(), known.end(),
                         [&field = field](const char* name) { return field == name; })) {
            path.Fail("unknown field \"" + field + "\"");
        }
    }
}

bool flag_field(const Json& object, const char* field, const EntryPath& path) {
    const auto found = object.find(field);
    if (found == object.end()) {
        return false;
    }
    if (!found->is_boolean()) {
        path.Fail(std::string("\"") + field + "\" must be true or false");
    }
    return found->get<bool>();
}

// A "min" or "max" of a number item.
std::optional<double> bound_field(const Json& object, const char* field, const ItemSchema& item,
                                  const EntryPath& path) {
    const auto found = object.find(field);
    if (found == object.end()) {
        return std::nullopt;
    }
    if (item.type != DataType::INTEGER && item.type != DataType::REAL) {
        path.Fail(std::string("only INTEGER and REAL items have \"") + field + "\"");
    }
    if (!found->is_number()) {
        path.Fail(std::string("\"") + field + "\" must be a number");
    }
    return found->get<double>();
}

// The text of a field that names an entry, for messages about it; empty when there is none, so
// that a malformed entry is still named as far as it can be.
std::string name_of(const Json& entry, const char* field) {
    if (!entry.is_object()) {
        return {};
    }
    const auto found = entry.find(field);
    return found != entry.end() && found->is_string() ? found->get<std::string>() : std::string();
}

bool is_upper_case(const std::string& text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

// Keywords come as a list of the library's keywords (their values looked up) or as an object
// of keyword to value.
std::vector<std::pair<std::string, int>> parse_keywords(const Json& value, const EntryPath& path) {
    std::vector<std::pair<std::string, int>> keywords;
    if (value.is_array()) {
        const ZentuCmdItemDefs::KeywordMap known = ZentuCmdItemDefs::create_enum_map();
        for (const Json& keyword : value) {
            const auto found =
                keyword.is_string() ? known.find(keyword.get<std::string>()) : known.end();
            if (found == known.end()) {
                path.Fail("keyword " + keyword.dump() +
                          " is not one of the library's keywords; give its value as "
                          "\"keywords\": {\"TEXT\": value}");
            }
            keywords.emplace_back(found->first, static_cast<int>(found->second));
        }
    } else if (value.is_object()) {
        for (const auto& [keyword, number] : value.items()) {
            if (!number.is_number_integer()) {
                path.Fail("the value of keyword \"" + keyword + "\" must be an integer");
            }
            keywords.emplace_back(keyword, number.get<int>());
        }
    } else {
        path.Fail("\"keywords\" must be a list of keywords or an object of keyword to value");
    }
    for (const auto& [keyword, number] : keywords) {
        if (keyword.empty() || !is_upper_case(keyword)) {
            path.Fail("keyword \"" + keyword + "\" must be upper case, as texts are matched so");
        }
    }
    return keywords;
}

void check_default(const ItemSchema& item, const EntryPath& path) {
    const Json& value = item.default_value;
    if (value.is_null()) {
        return;
    }
    switch (item.type) {
        case DataType::INTEGER:
            if (!value.is_number_integer() || value.get<long long>() < INT32_MIN ||
                value.get<long long>() > INT32_MAX) {
                path.Fail("the default of an INTEGER item must be a 32-bit integer");
            }
            return;
        case DataType::REAL:
            if (!value.is_number()) {
                path.Fail("the default of a REAL item must be a number");
            }
            return;
        case DataType::REFERENCE:
            path.Fail("a REFERENCE item cannot have a default");
        default:
            if (!value.is_string()) {
                path.Fail("the default must be a text");
            }
    }
    if (item.type == DataType::ENUM &&
        std::none_of(item.keywords.begin(), item.keywords.end(),
                     [&](const auto& keyword) { return keyword.first == value; })) {
        path.Fail("the default " + value.dump() + " is not one of the item's keywords");
    }
}

ItemSchema parse_item(const Json& entry, const EntryPath& path) {
    if (!entry.is_object()) {
        path.Fail("an item must be an object");
    }
    reject_unknown_fields(entry,
                          {"name", "kind", "type", "default", "keywords", "references",
                           "description", "required", "multiple", "min", "max"},
                          path);
    ItemSchema item;
    item.name = text_field(entry, "name", path, true);
    if (item.name.empty() || !is_upper_case(item.name)) {
        path.Fail("the item name must be upper case, as names read from files are");
    }
    item.kind = entry.contains("kind")
                    ? enum_named<CmdItem>(ZentuCmdItemDefs::CMD_ITEM_NAMES, entry["kind"],
                                          "item kind", path)
                    : enum_named<CmdItem>(ZentuCmdItemDefs::CMD_ITEM_NAMES, entry["name"],
                                          "item kind (give \"kind\")", path);
    item.type = enum_named<DataType>(ZentuCmdItemDefs::DATA_TYPE_NAMES,
                                     required(entry, "type", path), "data type", path);
    item.description = text_field(entry, "description", path, false);
    if (item.type == DataType::ENUM) {
        item.keywords = parse_keywords(required(entry, "keywords", path), path);
    } else if (entry.contains("keywords")) {
        path.Fail("only ENUM items have \"keywords\"");
    }
    if (item.type == DataType::REFERENCE) {
        item.references = enum_named<Cmd>(
            ZentuCmdDefs::CMD_NAMES, required(entry, "references", path), "command kind", path);
    } else if (item.type == DataType::LIST && entry.contains("references")) {
        item.references =
            enum_named<Cmd>(ZentuCmdDefs::CMD_NAMES, entry["references"], "command kind", path);
    } else if (entry.contains("references")) {
        path.Fail("only REFERENCE and LIST items have \"references\"");
    }
    if (entry.contains("default")) {
        item.default_value = entry["default"];
    }
    check_default(item, path);
    item.required = flag_field(entry, "required", path);
    item.multiple = flag_field(entry, "multiple", path);
    item.min = bound_field(entry, "min", item, path);
    item.max = bound_field(entry, "max", item, path);
    if (item.min && item.max && *item.min > *item.max) {
        path.Fail("\"min\" must not be above \"max\"");
    }
    return item;
}

CommandSchema parse_command(const Json& entry, const EntryPath& path) {
    if (!entry.is_object()) {
        path.Fail("a command must be an object");
    }
    reject_unknown_fields(entry, {"keyword", "kind", "create_default", "description", "items"},
                          path);
    CommandSchema command;
    command.keyword = text_field(entry, "keyword", path, true);
    if (command.keyword.empty() || !is_upper_case(command.keyword) ||
        command.keyword.find_first_of(" \t") != std::string::npos) {
        path.Fail("the keyword must be one upper-case word, as keywords read from files are");
    }
    command.kind =
        entry.contains("kind")
            ? enum_named<Cmd>(ZentuCmdDefs::CMD_NAMES, entry["kind"], "command kind", path)
            : enum_named<Cmd>(ZentuCmdDefs::CMD_NAMES, entry["keyword"],
                              "command kind (give \"kind\")", path);
    if (const auto flag = entry.find("create_default"); flag != entry.end()) {
        if (!flag->is_boolean()) {
            path.Fail("\"create_default\" must be true or false");
        }
        command.create_default = flag->get<bool>();
    }
    command.description = text_field(entry, "description", path, false);
    const Json& items = entry.contains("items") ? entry["items"] : Json::array();
    if (!items.is_array()) {
        path.Fail("\"items\" must be a list");
    }
    std::set<std::string> names;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::string name = name_of(items[i], "name");
        const EntryPath itemPath = path.Child("items", i, name);
        command.items.push_back(parse_item(items[i], itemPath));
        if (!names.insert(command.items.back().name).second) {
            itemPath.Fail("the item is described twice");
        }
    }
    return command;
}

RuleSchema parse_rule(const Json& entry, const EntryPath& path) {
    if (!entry.is_object()) {
        path.Fail("a rule must be an object");
    }
    RuleSchema rule;
    rule.rule = text_field(entry, "rule", path, true);
    rule.description = text_field(entry, "description", path, false);
    rule.parameters = entry;
    rule.parameters.erase("rule");
    rule.parameters.erase("description");
    if (const std::string problem = ZentuRuleCatalog::rule_problem(rule); !problem.empty()) {
        path.Fail(problem);
    }
    return rule;
}

}  // namespace

ZentuJobSchema ZentuJobSchema::Builtin() {
    return Parse(Json::parse(BuiltinText()), "built-in schema");
}

ZentuJobSchema ZentuJobSchema::Load(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        fail(path + ": cannot be opened");
    }
    Json document;
    try {
        document = Json::parse(in);
    } catch (const nlohmann::json::parse_error& error) {
        fail(path + ": not valid JSON: " + error.what());
    }
    return Parse(document, path);
}

ZentuJobSchema ZentuJobSchema::Parse(const Json& document, const std::string& source) {
    const EntryPath path(source);
    if (!document.is_object()) {
        path.Fail("a schema must be a JSON object with \"commands\" and \"rules\"");
    }
    reject_unknown_fields(document, {"description", "commands", "rules"}, path);
    ZentuJobSchema schema;
    schema.description = text_field(document, "description", path, false);
    const Json& commands = required(document, "commands", path);
    const Json& rules = document.contains("rules") ? document["rules"] : Json::array();
    if (!commands.is_array() || !rules.is_array()) {
        path.Fail("\"commands\" and \"rules\" must be lists");
    }
    std::set<std::string> keywords;
    for (std::size_t i = 0; i < commands.size(); ++i) {
        const std::string keyword = name_of(commands[i], "keyword");
        const EntryPath commandPath = path.Child("commands", i, keyword);
        schema.commands.push_back(parse_command(commands[i], commandPath));
        if (!keywords.insert(schema.commands.back().keyword).second) {
            commandPath.Fail("the keyword is described twice");
        }
    }
    for (std::size_t i = 0; i < rules.size(); ++i) {
        const std::string name = name_of(rules[i], "rule");
        const EntryPath rulePath = path.Child("rules", i, name);
        schema.rules.push_back(parse_rule(rules[i], rulePath));
        try {
            schema.ruleAdders_.push_back(
                ZentuRuleCatalog::bind_rule(schema.rules.back(), *schema.bound_));
        } catch (const KPL_Failure& failure) {
            rulePath.Fail(failure.GetMessage());
        }
    }
    return schema;
}
