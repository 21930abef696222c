#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

// Weights summed by name, in the order of first appearance. A few names are found by looking
// through them, which costs no allocation per name in the short sums that most expressions are;
// past that, an index built once keeps long sums linear.
class ZentuExpressionWeights {
  public:
    // The names with their totals.
    using Entries = std::vector<std::pair<std::string, double>>;

    // Adds weight to the name's total, or appends the name with weight as its total.
    void Add(const std::string& name, double weight);

    // The totals in the order of first appearance; a caller may change totals, not names.
    Entries& Totals() { return entries_; }
    const Entries& Totals() const { return entries_; }

  private:
    // Where the name stands in the entries, or their size when it is not there.
    std::size_t PositionOf(const std::string& name);

    Entries entries_;
    // The positions of the names, once there are more than a look through them should cover.
    std::unordered_map<std::string, std::size_t> index_;
};
