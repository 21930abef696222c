#include "UnifiedDiff.h"

#include <algorithm>
#include <ostream>
#include <vector>

namespace zentu_cmd {

namespace {

// Equal lines shown around each change.
constexpr std::size_t CONTEXT_LINES = 3;
// The most edits searched for a shortest script; past it, the lines between the equal start
// and end are shown as replaced, so that a file that changed everywhere still diffs quickly.
constexpr std::size_t EDIT_SEARCH_LIMIT = 2000;
// What marks a last line without line feed.
constexpr const char* NO_NEWLINE_MARK = "\\ No newline at end of file\n";

using Lines = std::vector<std::string_view>;

// One step of the edit script: a line kept (' '), removed ('-') or added ('+'), with the indices
// of the old and the new line that the step is at.
struct Edit {
    char sign;
    std::size_t old_line;
    std::size_t new_line;
};

// The lines of a text, each with its line feed, so that a last line without one differs from
// the same line with one.
Lines lines_of(std::string_view text) {
    Lines lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t feed = text.find('\n', begin);
        const std::size_t end = feed == std::string_view::npos ? text.size() : feed + 1;
        lines.push_back(text.substr(begin, end - begin));
        begin = end;
    }
    return lines;
}

// A shortest edit script between old lines [oldBegin, oldEnd) and new lines [newBegin, newEnd)
// by Myers' greedy search, which keeps per number of edits d the furthest old line reached on
// every diagonal k = old - new; the script is read backwards from those snapshots.
class ShortestEdit {
  public:
    // The search between the given stretches of the two texts' lines.
    ShortestEdit(const Lines& before, const Lines& after, std::size_t oldBegin, std::size_t oldEnd,
                 std::size_t newBegin, std::size_t newEnd)
        : before_(before),
          after_(after),
          oldBegin_(oldBegin),
          newBegin_(newBegin),
          n_(static_cast<long>(oldEnd - oldBegin)),
          m_(static_cast<long>(newEnd - newBegin)) {}

    // Appends the script to edits; false, and nothing appended, when it needs more edits than
    // the limit.
    bool AppendTo(std::vector<Edit>& edits) {
        if (!Search()) {
            return false;
        }
        std::vector<Edit> reversed;
        long x = n_;
        long y = m_;
        for (long d = static_cast<long>(snapshots_.size()) - 1; d >= 0; --d) {
            const long k = x - y;
            const long previousK = FromAbove(d, k) ? k + 1 : k - 1;
            const long previousX = At(d, previousK);
            const long previousY = previousX - previousK;
            for (; x > previousX && y > previousY; --x, --y) {
                reversed.push_back(Step(' ', x - 1, y - 1));
            }
            if (d > 0) {
                reversed.push_back(x == previousX ? Step('+', x, previousY)
                                                  : Step('-', previousX, y));
            }
            x = previousX;
            y = previousY;
        }
        edits.insert(edits.end(), reversed.rbegin(), reversed.rend());
        return true;
    }

  private:
    // Records the furthest reach of every step until both ends are reached; false when that
    // takes more steps than the limit.
    bool Search() {
        const long limit = std::min(n_ + m_, static_cast<long>(EDIT_SEARCH_LIMIT));
        std::vector<long> furthest(static_cast<std::size_t>(2 * limit + 3), 0);
        const long offset = limit + 1;
        for (long d = 0; d <= limit; ++d) {
            snapshots_.emplace_back(furthest.begin() + (offset - d - 1),
                                    furthest.begin() + (offset + d + 2));
            for (long k = -d; k <= d; k += 2) {
                long x = FromAbove(d, k) ? At(d, k + 1) : At(d, k - 1) + 1;
                for (long y = x - k; x < n_ && y < m_ && Same(x, y); ++x, ++y) {
                }
                furthest[static_cast<std::size_t>(offset + k)] = x;
                if (x >= n_ && x - k >= m_) {
                    return true;
                }
            }
        }
        return false;
    }

    // Whether the best way onto diagonal k in step d comes from diagonal k + 1 (an added line).
    bool FromAbove(long d, long k) const {
        return k == -d || (k != d && At(d, k - 1) < At(d, k + 1));
    }

    // The furthest old line on diagonal k before step d.
    long At(long d, long k) const {
        return snapshots_[static_cast<std::size_t>(d)][static_cast<std::size_t>(k + d + 1)];
    }

    // Whether old line x and new line y of the stretches are equal.
    bool Same(long x, long y) const {
        return before_[oldBegin_ + static_cast<std::size_t>(x)] ==
               after_[newBegin_ + static_cast<std::size_t>(y)];
    }

    // An edit at old line x and new line y of the stretches.
    Edit Step(char sign, long x, long y) const {
        return Edit{sign, oldBegin_ + static_cast<std::size_t>(x),
                    newBegin_ + static_cast<std::size_t>(y)};
    }

    const Lines& before_;
    const Lines& after_;
    const std::size_t oldBegin_;
    const std::size_t newBegin_;
    const long n_;
    const long m_;
    // Per step d, the furthest old lines on the diagonals -d - 1 to d + 1 before it.
    std::vector<std::vector<long>> snapshots_;
};

// The edits from before to after: equal lines at the start and the end are kept as they are,
// and only the stretch between them is searched.
std::vector<Edit> edit_script(const Lines& before, const Lines& after) {
    std::size_t prefix = 0;
    while (prefix < before.size() && prefix < after.size() && before[prefix] == after[prefix]) {
        ++prefix;
    }
    std::size_t suffix = 0;
    while (suffix < before.size() - prefix && suffix < after.size() - prefix &&
           before[before.size() - 1 - suffix] == after[after.size() - 1 - suffix]) {
        ++suffix;
    }
    const std::size_t oldEnd = before.size() - suffix;
    const std::size_t newEnd = after.size() - suffix;
    std::vector<Edit> edits;
    for (std::size_t line = 0; line < prefix; ++line) {
        edits.push_back(Edit{' ', line, line});
    }
    if (!ShortestEdit(before, after, prefix, oldEnd, prefix, newEnd).AppendTo(edits)) {
        for (std::size_t line = prefix; line < oldEnd; ++line) {
            edits.push_back(Edit{'-', line, prefix});
        }
        for (std::size_t line = prefix; line < newEnd; ++line) {
            edits.push_back(Edit{'+', oldEnd, line});
        }
    }
    for (std::size_t line = 0; line < suffix; ++line) {
        edits.push_back(Edit{' ', oldEnd + line, newEnd + line});
    }
    return edits;
}

// "start,length" of a hunk's side, lines counted from 1; an empty side names the line before.
std::string hunk_range(std::size_t first, std::size_t length) {
    return std::to_string(length == 0 ? first : first + 1) + "," + std::to_string(length);
}

// Prints the edits first to last as one hunk.
void print_hunk(const std::vector<Edit>& edits, std::size_t first, std::size_t last,
                const Lines& before, const Lines& after, std::ostream& out) {
    std::size_t oldLength = 0;
    std::size_t newLength = 0;
    for (std::size_t index = first; index <= last; ++index) {
        oldLength += edits[index].sign != '+' ? 1 : 0;
        newLength += edits[index].sign != '-' ? 1 : 0;
    }
    out << "@@ -" << hunk_range(edits[first].old_line, oldLength) << " +"
        << hunk_range(edits[first].new_line, newLength) << " @@\n";
    for (std::size_t index = first; index <= last; ++index) {
        const Edit& edit = edits[index];
        const std::string_view line =
            edit.sign == '+' ? after[edit.new_line] : before[edit.old_line];
        out << edit.sign << line;
        if (line.back() != '\n') {
            out << '\n' << NO_NEWLINE_MARK;
        }
    }
}

}  // namespace

void print_unified_diff(std::string_view before, std::string_view after, const std::string& name,
                        std::ostream& out) {
    if (before == after) {
        return;
    }
    const Lines oldLines = lines_of(before);
    const Lines newLines = lines_of(after);
    const std::vector<Edit> edits = edit_script(oldLines, newLines);
    out << "--- a/" << name << "\n+++ b/" << name << "\n";
    for (std::size_t change = 0; change < edits.size();) {
        if (edits[change].sign == ' ') {
            ++change;
            continue;
        }
        // Changes that fewer than twice the context lines part share a hunk.
        std::size_t last = change;
        for (std::size_t next = change + 1;
             next < edits.size() && next <= last + 2 * CONTEXT_LINES + 1; ++next) {
            if (edits[next].sign != ' ') {
                last = next;
            }
        }
        const std::size_t first = change > CONTEXT_LINES ? change - CONTEXT_LINES : 0;
        const std::size_t stop = std::min(edits.size() - 1, last + CONTEXT_LINES);
        print_hunk(edits, first, stop, oldLines, newLines, out);
        change = stop + 1;
    }
}

}  // namespace zentu_cmd
