#pragma once

// Every message text and log tag of the engine, in one place. The texts are printf formats; the
// tags name the thrower as "|%P|<module>|<class>", "%P" included, for the host's log sink.
namespace ZentuCmdMessages {

inline constexpr const char* INT_ITEM_TAG = "|%P|ZentuCmdEngine|ZentuCmdIntItem";
// Item name, text as given.
inline constexpr const char* INT_ITEM_INVALID =
    "The item %s has an invalid type. '%s' must be an integer value.";

inline constexpr const char* SCALAR_ITEM_TAG = "|%P|ZentuCmdEngine|ZentuCmdScalarItem";
// Item name, text as given.
inline constexpr const char* SCALAR_ITEM_INVALID =
    "The item %s has an invalid type. '%s' must be a scalar value.";

inline constexpr const char* ENUM_ITEM_TAG = "|%P|ZentuCmdEngine|ZentuCmdEnumItem";
// Text as given, item name, valid keywords joined by ", ".
inline constexpr const char* ENUM_ITEM_INVALID =
    "The value \"%s\" is not allowed for item %s.\nValid options are: \n%s";

inline constexpr const char* CONTAINER_RULES_TAG = "|%P|ZentuJobDefinition|ZentuCmdContainerRules";
// The identifier of the one failure that carries one.
inline constexpr const char* CONFIGURATION_MISSING_ID = "202810221842";
// Command name, command kind.
inline constexpr const char* CONFIGURATION_MISSING =
    "Configuration for %s of type %d not available.";

inline constexpr const char* PAR_FILE_ADAPTER_TAG = "|%P|ZentuCmdEngine|ZentuParFileAdapter";
// The source path that the reader's log lines name.
inline constexpr const char* PAR_FILE_ADAPTER_SOURCE =
    "ZentuJobDefinition/ZentuCmdEngine.m/src/ZentuParFileAdapter";
// Upper-cased item name, command name, " with ID_NAME <id>" or nothing.
inline constexpr const char* UNKNOWN_ITEM = "Unknown item '%s' found in command %s%s.";
// Command keyword, "with ID_NAME <id>" or nothing, item name.
inline constexpr const char* ITEM_CREATION_FAILED =
    "In command %s %s, the creation of the item %s failed.";

}  // namespace ZentuCmdMessages
