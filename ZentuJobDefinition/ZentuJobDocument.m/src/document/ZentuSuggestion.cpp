#include "ZentuSuggestion.h"

#include <algorithm>
#include <cstddef>

#include "ZentuStringUtil.h"

namespace {

// Edits (insert, delete, replace, swap two neighbours) that turn a into b: a swap is the most
// common slip of a typing hand, so it counts as one.
std::size_t edit_distance(const std::string& a, const std::string& b) {
    std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        d[i][0] = i;
    }
    for (std::size_t j = 0; j <= b.size(); ++j) {
        d[0][j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t substitution = d[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, substitution});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
            }
        }
    }
    return d[a.size()][b.size()];
}

}  // namespace

std::string ZentuSuggestion::closest(const std::string& text,
                                     const std::vector<std::string>& candidates) {
    const std::string upper = ZentuStringUtil::to_upper(text);
    std::string best;
    std::size_t bestDistance = std::max<std::size_t>(1, text.size() / 3) + 1;
    for (const std::string& candidate : candidates) {
        const std::size_t distance = edit_distance(upper, candidate);
        if (!candidate.empty() && distance < bestDistance) {
            best = candidate;
            bestDistance = distance;
        }
    }
    return best;
}

const std::string& ZentuSuggestions::Closest(const std::string& text) {
    const auto found = closest_.find(text);
    if (found != closest_.end()) {
        return found->second;
    }
    return closest_.emplace(text, ZentuSuggestion::closest(text, candidates_)).first->second;
}
