#include "checks/ZentuExpressionWeights.h"

namespace {

// Up to this many names, looking through them is quicker than an index.
constexpr std::size_t UNINDEXED_NAMES = 16;

}  // namespace

void ZentuExpressionWeights::Add(const std::string& name, double weight) {
    const std::size_t position = PositionOf(name);
    if (position < entries_.size()) {
        entries_[position].second += weight;
        return;
    }
    entries_.emplace_back(name, weight);
    if (!index_.empty()) {
        index_.emplace(name, position);
    }
}

std::size_t ZentuExpressionWeights::PositionOf(const std::string& name) {
    if (entries_.size() <= UNINDEXED_NAMES) {
        for (std::size_t position = 0; position < entries_.size(); ++position) {
            if (entries_[position].first == name) {
                return position;
            }
        }
        return entries_.size();
    }
    // Built at the first look past the limit, and kept up to date by Add from then on.
    if (index_.empty()) {
        for (std::size_t position = 0; position < entries_.size(); ++position) {
            index_.emplace(entries_[position].first, position);
        }
    }
    const auto found = index_.find(name);
    return found == index_.end() ? entries_.size() : found->second;
}
