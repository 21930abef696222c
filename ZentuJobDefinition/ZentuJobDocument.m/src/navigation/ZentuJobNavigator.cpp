#include "ZentuJobNavigator.h"

#include <algorithm>

#include "ZentuStringUtil.h"
#include "ZentuTypedJob.h"

namespace {

// Characters that would change what the line or an expression means.
constexpr std::string_view NOT_IN_IDENTIFIERS = "=,%#";

}  // namespace

ZentuJobNavigator::ZentuJobNavigator(const ZentuTypedJob& job, const ZentuJobSchema& schema)
    : job_(job), schema_(schema), uses_(zentu_identifier_uses(job.Document(), schema)) {}

const ZentuIdentifierUse* ZentuJobNavigator::UseAt(const ZentuTextPosition& position) const {
    const auto found = std::find_if(uses_.begin(), uses_.end(), [&](const ZentuIdentifierUse& use) {
        return zentu_range_touches(use.range, position);
    });
    return found == uses_.end() ? nullptr : &*found;
}

const ZentuIdentifierUse* ZentuJobNavigator::DefinitionOf(const ZentuIdentifierUse& use) const {
    const ZentuIdentifierUse* any = nullptr;
    for (const ZentuIdentifierUse& candidate : uses_) {
        if (candidate.role != ZentuIdentifierUse::Role::DEFINITION ||
            candidate.identifier != use.identifier) {
            continue;
        }
        if (candidate.kind == use.kind || use.kind == ZentuCmdDefs::Cmd::CMD_PLACEHOLDER) {
            return &candidate;
        }
        any = any != nullptr ? any : &candidate;
    }
    return any;
}

std::vector<const ZentuIdentifierUse*> ZentuJobNavigator::UsesOf(
    const std::string& identifier) const {
    const std::string upper = ZentuStringUtil::to_upper(identifier);
    std::vector<const ZentuIdentifierUse*> found;
    for (const ZentuIdentifierUse& use : uses_) {
        if (use.identifier == upper) {
            found.push_back(&use);
        }
    }
    return found;
}

std::optional<std::vector<ZentuTextEdit>> ZentuJobNavigator::Rename(
    const ZentuTextPosition& position, const std::string& newName) const {
    const ZentuIdentifierUse* use = UseAt(position);
    if (use == nullptr || !IsIdentifier(newName)) {
        return std::nullopt;
    }
    std::vector<ZentuTextEdit> edits;
    for (const ZentuIdentifierUse* named : UsesOf(use->identifier)) {
        edits.push_back({named->range, newName});
    }
    return edits;
}

bool ZentuJobNavigator::IsIdentifier(const std::string& text) {
    return !text.empty() && std::none_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return c == ' ' || ZentuStringUtil::is_control_byte(byte) ||
               NOT_IN_IDENTIFIERS.find(c) != std::string_view::npos;
    });
}
