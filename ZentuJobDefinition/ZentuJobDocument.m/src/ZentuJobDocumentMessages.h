#pragma once

// The texts of the job-document library's failures and findings, in one place.
namespace ZentuJobDocumentMessages {

// The tag of a refused schema.
inline constexpr const char* SCHEMA_TAG = "|%P|ZentuJobDocument|ZentuJobSchema";
// The tag of a failure of the bound rules.
inline constexpr const char* BOUND_RULES_TAG = "|%P|ZentuJobDocument|ZentuBoundRules";

// A schema binds more rules of one type than the library has functions for (%zu, %s).
inline constexpr const char* TOO_MANY_BOUND_RULES =
    "a schema may bind at most %zu %s rules; split the schema or use fewer rules";
// A bound rule's function ran on a thread where no read with its schema is going on.
inline constexpr const char* BOUND_RULE_OUTSIDE_SCOPE =
    "a rule bound from a schema ran outside a read with that schema";

}  // namespace ZentuJobDocumentMessages
