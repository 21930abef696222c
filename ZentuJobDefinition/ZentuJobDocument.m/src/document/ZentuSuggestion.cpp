#include "ZentuSuggestion.h"

#include <algorithm>
#include <cstddef>

#include "ZentuStringUtil.h"

namespace {

std::size_t edit_distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> previous(b.size() + 1);
    std::vector<std::size_t> current(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        previous[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        current[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t substitution = previous[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            current[j] = std::min({previous[j] + 1, current[j - 1] + 1, substitution});
        }
        std::swap(previous, current);
    }
    return previous[b.size()];
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
