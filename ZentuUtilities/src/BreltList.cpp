#include "BreltList.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstdint>
#include <functional>
#include <istream>
#include <limits>
#include <ostream>
#include <queue>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "KPL_LogMacros.h"
#include "ZentuStringUtil.h"
#include "ZentuUtilitiesMessages.h"

namespace {

namespace Messages = ZentuUtilitiesMessages;
using KPL_LogMacros::LogMsgType;

// The bound on the length of a list being read, until a host sets another.
constexpr std::size_t DEFAULT_MAX_SIZE = 10'000'000;

// The bound on the length of a list being read; hosts may set it from any thread.
std::atomic<std::size_t> maxSizeSetting{DEFAULT_MAX_SIZE};

// How many pieces most integer lists have at most, a piece being a value or a range.
constexpr std::size_t TYPICAL_PIECES = 16;

// How many pieces (a value counts one, a range two) the writer puts on a line before breaking it.
constexpr int PIECES_PER_LINE = 9;

// The largest magnitudes of an int, positive and negative, as the number reader compares them.
constexpr std::uint64_t INT_MAX_MAGNITUDE = 2147483647U;
constexpr std::uint64_t INT_MIN_MAGNITUDE = 2147483648U;

// Logs a line of this file that takes no argument.
void Trace(int line, const char* message) {
    if (KPL_LogMacros::IsLogEnabled(KPL_LogMacros::LOG_TRACE)) {
        KPL_LogMacros::log_msg(KPL_LogMacros::LOG_TRACE, __FILE__, line, Messages::BRELT_LIST_TAG,
                               "%s", message);
    }
}

// Logs a line whose arguments are numbers; their texts are built only when the line is wanted,
// so that trace lines cost nothing at the default verbosity.
template <typename... Numbers>
void LogNumbers(LogMsgType type, int line, const char* format, Numbers... numbers) {
    if (KPL_LogMacros::IsLogEnabled(type)) {
        KPL_LogMacros::log_msg(type, __FILE__, line, Messages::BRELT_LIST_TAG, format,
                               ZentuStringUtil::String(numbers).c_str()...);
    }
}

// Logs what writing a list of the given size logs.
void LogWritten(std::size_t size) {
    if (size == 0) {
        Trace(__LINE__, Messages::BRELT_LIST_WRITTEN_EMPTY);
    } else if (size == 1) {
        Trace(__LINE__, Messages::BRELT_LIST_WRITTEN_SINGLE);
    } else {
        KPL_LogMacros::log_msg(KPL_LogMacros::LOG_TRACE, __FILE__, __LINE__,
                               Messages::BRELT_LIST_TAG, Messages::BRELT_LIST_WRITTEN, size);
    }
}

// Whether the classic locale counts the character as white space; unlike std::isspace it takes
// bytes above 127 safely.
constexpr bool IsWhiteSpace(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

// Whether the character is a decimal digit.
constexpr bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

// Reads from a stream with its own operations, so that its state ends as the reading leaves it.
class StreamSource {
  public:
    explicit StreamSource(std::istream& in) : in_(in) {}

    // Whether neither the end nor a failure has been met.
    bool Good() const { return in_.good(); }

    // Whether the end has been met.
    bool AtEnd() const { return in_.eof(); }

    // Skips white space as std::ws does.
    void SkipWhiteSpace() { in_ >> std::ws; }

    // Extracts an int after white space; false when the extraction fails.
    bool ReadNumber(int& number) {
        in_ >> std::ws >> number;
        return !in_.fail();
    }

    // Extracts one character after white space; false when there is none.
    bool ReadCharacter(char& character) {
        in_ >> character;
        return !in_.fail();
    }

  private:
    std::istream& in_;
};

// Reads the characters of a text exactly as a classic-locale input string stream holding it would,
// its end and failure flags included, without the cost of a stream.
class TextSource {
  public:
    explicit TextSource(const std::string& text)
        : next_(text.data()), end_(text.data() + text.size()) {}

    // Whether neither the end nor a failure has been met.
    bool Good() const { return !atEnd_ && !failed_; }

    // Whether the end has been met.
    bool AtEnd() const { return atEnd_; }

    // Skips white space; meeting the end marks it, as std::ws does.
    void SkipWhiteSpace() {
        while (next_ != end_ && IsWhiteSpace(*next_)) {
            ++next_;
        }
        atEnd_ = atEnd_ || next_ == end_;
    }

    // Extracts an int as the classic num_get does: one optional sign, decimal digits, failure
    // without digits or outside the int range, and the end marked when the digits run into it.
    bool ReadNumber(int& number) {
        SkipWhiteSpace();
        if (atEnd_) {
            return Fail();
        }
        const bool negative = *next_ == '-';
        if (negative || *next_ == '+') {
            ++next_;
        }
        const char* const digits = next_;
        std::uint64_t magnitude = 0;
        for (; next_ != end_ && IsDigit(*next_); ++next_) {
            // Past the int range the value no longer matters, only that it is too large.
            if (magnitude <= INT_MIN_MAGNITUDE) {
                magnitude = magnitude * 10 + static_cast<std::uint64_t>(*next_ - '0');
            }
        }
        atEnd_ = next_ == end_;
        if (next_ == digits || magnitude > (negative ? INT_MIN_MAGNITUDE : INT_MAX_MAGNITUDE)) {
            return Fail();
        }
        const auto value = static_cast<std::int64_t>(magnitude);
        number = static_cast<int>(negative ? -value : value);
        return true;
    }

    // Extracts one character after white space; false when there is none.
    bool ReadCharacter(char& character) {
        SkipWhiteSpace();
        if (atEnd_) {
            return Fail();
        }
        character = *next_++;
        return true;
    }

  private:
    // Marks a failed extraction.
    bool Fail() {
        failed_ = true;
        return false;
    }

    const char* next_;
    const char* const end_;
    bool atEnd_ = false;
    bool failed_ = false;
};

// Why a reading stopped short.
enum class ReadError {
    NONE,
    NUMBER_UNREADABLE,
    SEPARATOR_UNREADABLE,
    SEPARATOR_UNEXPECTED,
    TOO_LONG,
};

// How a reading ended, with what the message of its failure needs; building that message is left
// to the callers that throw, so that a trial reading costs no formatting.
struct ReadOutcome {
    ReadError error = ReadError::NONE;
    char separator = '\0';
    std::size_t maxSize = 0;
};

// The values from low to high, stride apart, that a range of a list adds; one value has stride 1.
struct Progression {
    std::int64_t low;
    std::int64_t high;
    std::int64_t stride;

    // The number of values.
    std::uint64_t Count() const { return static_cast<std::uint64_t>((high - low) / stride) + 1; }

    // The remainder that every value leaves divided by the stride.
    std::int64_t Residue() const { return ((low % stride) + stride) % stride; }
};

// The range start-end with its step, for a step that runs from start toward end.
Progression RunningRange(int start, int end, int step) {
    const std::int64_t stride = step > 0 ? std::int64_t{step} : -std::int64_t{step};
    const std::int64_t span = (std::int64_t{end} - start) / step * stride;
    return start < end ? Progression{start, start + span, stride}
                       : Progression{start - span, start, stride};
}

// The one value.
Progression SingleValue(int value) {
    return Progression{value, value, 1};
}

// Joins progressions on the same lattice (stride and residue) whose values touch or overlap, so
// that repeated and overlapping ranges of one step count once.
void JoinLattices(std::vector<Progression>& progressions) {
    std::sort(progressions.begin(), progressions.end(),
              [](const Progression& a, const Progression& b) {
                  return std::make_tuple(a.stride, a.Residue(), a.low) <
                         std::make_tuple(b.stride, b.Residue(), b.low);
              });
    std::size_t joined = 0;
    for (std::size_t next = 1; next < progressions.size(); ++next) {
        Progression& last = progressions[joined];
        const Progression& candidate = progressions[next];
        if (candidate.stride == last.stride && candidate.Residue() == last.Residue() &&
            candidate.low <= last.high + last.stride) {
            last.high = std::max(last.high, candidate.high);
        } else {
            progressions[++joined] = candidate;
        }
    }
    progressions.resize(progressions.empty() ? 0 : joined + 1);
}

// Hands visit the distinct values of overlapping progressions in ascending order, walking them
// together, while visit returns true.
template <typename Visit>
void WalkTogether(const Progression* first, const Progression* last, Visit visit) {
    using Cursor = std::pair<std::int64_t, const Progression*>;
    std::priority_queue<Cursor, std::vector<Cursor>, std::greater<>> cursors;
    for (const Progression* progression = first; progression != last; ++progression) {
        cursors.emplace(progression->low, progression);
    }
    bool started = false;
    std::int64_t previous = 0;
    while (!cursors.empty()) {
        const auto [value, progression] = cursors.top();
        cursors.pop();
        if ((!started || value != previous) && !visit(value)) {
            return;
        }
        started = true;
        previous = value;
        if (value < progression->high) {
            cursors.emplace(value + progression->stride, progression);
        }
    }
}

// Hands group each run of progressions whose spans overlap, in ascending order of their values,
// once those of one lattice that touch are joined, while group returns true. A run of one
// progression holds its values alone; only a longer run has to be walked value by value.
template <typename Group>
void ForEachOverlappingRun(std::vector<Progression>& progressions, Group group) {
    JoinLattices(progressions);
    std::sort(progressions.begin(), progressions.end(),
              [](const Progression& a, const Progression& b) { return a.low < b.low; });
    for (std::size_t first = 0; first < progressions.size();) {
        std::size_t last = first + 1;
        std::int64_t high = progressions[first].high;
        for (; last < progressions.size() && progressions[last].low <= high; ++last) {
            high = std::max(high, progressions[last].high);
        }
        if (!group(&progressions[first], &progressions[first] + (last - first))) {
            return;
        }
        first = last;
    }
}

// Hands visit the distinct values of a run of overlapping progressions in ascending order.
void VisitRun(const Progression* first, const Progression* last,
              const std::function<void(int)>& visit) {
    if (last - first > 1) {
        WalkTogether(first, last, [&visit](std::int64_t value) {
            visit(static_cast<int>(value));
            return true;
        });
        return;
    }
    for (std::int64_t value = first->low; value <= first->high; value += first->stride) {
        visit(static_cast<int>(value));
    }
}

// The number of distinct values of the progressions, or a number above cap once it passes cap.
std::uint64_t CountDistinct(std::vector<Progression> progressions, std::uint64_t cap) {
    std::uint64_t total = 0;
    ForEachOverlappingRun(
        progressions, [&total, cap](const Progression* first, const Progression* last) {
            if (last - first == 1) {
                total += first->Count();
            } else {
                WalkTogether(first, last, [&total, cap](std::int64_t) { return ++total <= cap; });
            }
            return total <= cap;
        });
    return total;
}

// Keeps the values read in a list, one set node each, as hosts receive them.
class ListTarget {
  public:
    explicit ListTarget(BreltList<int>& list) : list_(list) {}

    // Whether the reading starts from an empty list.
    bool ClearOnRead() const { return list_.clear_on_read; }

    // Empties the list.
    void Clear() { list_.Clear(); }

    // The step of a range written without one.
    int DefaultStep() const { return list_.default_step; }

    // The number of values.
    std::size_t Size() const { return list_.size(); }

    // Whether the list stays within maxSize values with the progression added.
    bool Fits(const Progression& added, std::size_t maxSize) const {
        const std::uint64_t room = maxSize - std::min(maxSize, list_.size());
        if (added.Count() <= room) {
            return true;
        }
        std::uint64_t present = 0;
        for (auto it = list_.elements.lower_bound(static_cast<int>(added.low));
             it != list_.elements.end() && *it <= added.high; ++it) {
            present += (*it - added.low) % added.stride == 0 ? 1 : 0;
        }
        return added.Count() - present <= room;
    }

    // Adds the values of the progression, each beside the one before, where the set looks
    // first; so a range costs linear time.
    void Add(const Progression& added) {
        auto hint = list_.elements.end();
        for (std::int64_t value = added.low; value <= added.high; value += added.stride) {
            hint = list_.elements.insert(hint, static_cast<int>(value));
        }
    }

  private:
    BreltList<int>& list_;
};

// Keeps the values read as the progressions that name them, so that a list costs memory in
// proportion to its text whatever its values; they are counted only when a bound asks.
class ProgressionTarget {
  public:
    // A reading into a fresh list starts empty anyway.
    static bool ClearOnRead() { return true; }

    // Forgets every progression.
    void Clear() {
        progressions_.clear();
        countBound_ = 0;
    }

    // The step of a range written without one, that of a default list.
    static int DefaultStep() { return 1; }

    // The number of distinct values.
    std::size_t Size() const {
        return static_cast<std::size_t>(
            CountDistinct(progressions_, std::numeric_limits<std::uint64_t>::max()));
    }

    // Whether the distinct values stay within maxSize with the progression added; counting is
    // needed only once the progressions together could pass the bound.
    bool Fits(const Progression& added, std::size_t maxSize) {
        if (countBound_ + added.Count() <= maxSize) {
            return true;
        }
        JoinLattices(progressions_);
        countBound_ = 0;
        for (const Progression& progression : progressions_) {
            countBound_ += progression.Count();
        }
        if (countBound_ + added.Count() <= maxSize) {
            return true;
        }
        std::vector<Progression> all = progressions_;
        all.push_back(added);
        return CountDistinct(std::move(all), maxSize) <= maxSize;
    }

    // Hands visit each distinct value, in ascending order.
    void VisitValues(const std::function<void(int)>& visit) {
        ForEachOverlappingRun(progressions_,
                              [&visit](const Progression* first, const Progression* last) {
                                  VisitRun(first, last, visit);
                                  return true;
                              });
    }

    // Adds the progression; the first one makes room for the pieces of a typical list at once
    // rather than growing the vector piece by piece.
    void Add(const Progression& added) {
        if (progressions_.capacity() == 0) {
            progressions_.reserve(TYPICAL_PIECES);
        }
        progressions_.push_back(added);
        countBound_ += added.Count();
    }

  private:
    std::vector<Progression> progressions_;
    // The sum of the progressions' counts, never below the number of distinct values.
    std::uint64_t countBound_ = 0;
};

// Counts the values that a reading adds without keeping them, so that a trial reading allocates
// nothing. Overlapping ranges may count a value twice, so once the counts pass the bound the
// answer is left to a reading that keeps the progressions.
class CountingTarget {
  public:
    // A reading into a fresh list starts empty anyway.
    static bool ClearOnRead() { return true; }

    // Forgets what was counted.
    void Clear() { count_ = 0; }

    // The step of a range written without one, that of a default list.
    static int DefaultStep() { return 1; }

    // Whether the counts stay within maxSize with the progression added; when they do not, the
    // list may still fit, which Undecided() tells.
    bool Fits(const Progression& added, std::size_t maxSize) {
        undecided_ = count_ + added.Count() > maxSize;
        return !undecided_;
    }

    // Counts the progression's values.
    void Add(const Progression& added) { count_ += added.Count(); }

    // Whether the reading stopped at a bound that the distinct values might not pass.
    bool Undecided() const { return undecided_; }

  private:
    std::uint64_t count_ = 0;
    bool undecided_ = false;
};

// Reads one list from a source of characters into a target: numbers, each followed by a separator
// that adds it as a value, opens a range or gives the range its end. A quiet reader logs nothing.
template <typename Source, typename Target, bool Logged = true>
class Reader {
  public:
    Reader(Source& source, Target& target, std::size_t maxSize)
        : source_(source), target_(target), maxSize_(maxSize) {}

    // Reads the list up to the end of the source or the first error.
    ReadOutcome Read() {
        TraceLine(__LINE__, Messages::BRELT_LIST_READ_STARTED);
        if (target_.ClearOnRead()) {
            target_.Clear();
        }
        source_.SkipWhiteSpace();
        if (source_.AtEnd()) {
            TraceLine(__LINE__, Messages::BRELT_LIST_READ_EMPTY);
        }
        while (source_.Good()) {
            int number = 0;
            if (!source_.ReadNumber(number)) {
                // A number cut off by the end, as after a final ',', ends the list.
                if (source_.AtEnd()) {
                    break;
                }
                return Fail(ReadError::NUMBER_UNREADABLE);
            }
            LogLine(KPL_LogMacros::LOG_TRACE, __LINE__, Messages::BRELT_LIST_PARSED_ELEMENT,
                    number);
            char separator = ',';
            if (!ReadSeparator(separator)) {
                return Fail(ReadError::SEPARATOR_UNREADABLE);
            }
            if (Logged && KPL_LogMacros::IsLogEnabled(KPL_LogMacros::LOG_TRACE)) {
                KPL_LogMacros::log_msg(KPL_LogMacros::LOG_TRACE, __FILE__, __LINE__,
                                       Messages::BRELT_LIST_TAG,
                                       Messages::BRELT_LIST_PARSED_SEPARATOR, separator);
            }
            const ReadError error = ApplySeparator(separator, number);
            if (error != ReadError::NONE) {
                return Fail(error, separator);
            }
        }
        TraceLine(__LINE__, Messages::BRELT_LIST_READ_SUCCEEDED);
        return ReadOutcome{};
    }

    // Whether a range with a step of 0 was added, which a logged reading warns about.
    bool ZeroStepMet() const { return zeroStepMet_; }

  private:
    // Logs a line that takes no argument.
    static void TraceLine(int line, const char* message) {
        if constexpr (Logged) {
            Trace(line, message);
        }
    }

    // Logs a line whose arguments are numbers.
    template <typename... Numbers>
    static void LogLine(LogMsgType type, int line, const char* format, Numbers... numbers) {
        if constexpr (Logged) {
            LogNumbers(type, line, format, numbers...);
        }
    }

    // Reads the separator after a number; the end of the source stands for ','.
    bool ReadSeparator(char& separator) {
        if (!source_.AtEnd()) {
            source_.SkipWhiteSpace();
        }
        if (source_.AtEnd()) {
            separator = ',';
            return true;
        }
        return source_.ReadCharacter(separator);
    }

    // Does what the separator after the number calls for.
    ReadError ApplySeparator(char separator, int number) {
        switch (separator) {
            case '-':
                return OpenRange(number);
            case ':':
                return SetRangeEnd(number);
            case ',':
                return EndEntry(number);
            default:
                return ReadError::SEPARATOR_UNEXPECTED;
        }
    }

    // Starts a range at the number.
    ReadError OpenRange(int start) {
        if (rangeOpen_) {
            return ReadError::SEPARATOR_UNEXPECTED;
        }
        rangeOpen_ = true;
        start_ = start;
        return ReadError::NONE;
    }

    // Gives the open range its end; the number after it is the step.
    ReadError SetRangeEnd(int end) {
        if (!rangeOpen_ || stepped_) {
            return ReadError::SEPARATOR_UNEXPECTED;
        }
        stepped_ = true;
        end_ = end;
        return ReadError::NONE;
    }

    // Adds the number as a value, or closes the open range with it as its end or its step.
    ReadError EndEntry(int number) {
        if (!rangeOpen_) {
            LogLine(KPL_LogMacros::LOG_TRACE, __LINE__, Messages::BRELT_LIST_ADDING_SINGLE, number);
            return Add(SingleValue(number));
        }
        const bool stepped = stepped_;
        rangeOpen_ = false;
        stepped_ = false;
        return stepped ? AddRange(start_, end_, number)
                       : AddRange(start_, number, target_.DefaultStep());
    }

    // Adds start, start + step, ... while they lie between start and end, end included when the
    // steps reach it exactly. A range whose step does not run toward its end adds its start only;
    // a step of 0 is warned about.
    ReadError AddRange(int start, int end, int step) {
        LogLine(KPL_LogMacros::LOG_TRACE, __LINE__, Messages::BRELT_LIST_ADDING_RANGE, start, end,
                step);
        if (step != 0 && start != end && (step > 0) == (start < end)) {
            return Add(RunningRange(start, end, step));
        }
        const ReadError error = Add(SingleValue(start));
        if (error == ReadError::NONE && step == 0) {
            zeroStepMet_ = true;
            LogLine(KPL_LogMacros::LOG_WARNING, __LINE__, Messages::BRELT_LIST_INVALID_STEP, step);
        }
        return error;
    }

    // Adds the values unless the list would exceed the bound. Deciding before adding keeps a range
    // such as 1-2000000000 from building a huge list just to refuse it.
    ReadError Add(const Progression& added) {
        if (!target_.Fits(added, maxSize_)) {
            return ReadError::TOO_LONG;
        }
        target_.Add(added);
        return ReadError::NONE;
    }

    // Ends the reading with an error. Its message shows the values as the writer writes them, so
    // the reading logs what writing them logs, whether or not the message is built.
    ReadOutcome Fail(ReadError error, char separator = '\0') {
        if constexpr (Logged) {
            if (KPL_LogMacros::IsLogEnabled(KPL_LogMacros::LOG_TRACE)) {
                LogWritten(target_.Size());
            }
        }
        return ReadOutcome{error, separator, maxSize_};
    }

    Source& source_;
    Target& target_;
    const std::size_t maxSize_;
    bool rangeOpen_ = false;
    bool stepped_ = false;
    bool zeroStepMet_ = false;
    int start_ = 0;
    int end_ = 0;
};

// The bound that a reading applies now.
std::size_t CurrentMaxSize() {
    return maxSizeSetting.load(std::memory_order_relaxed);
}

// Reads a list from any source of characters into a list, logging and bounded.
template <typename Source>
ReadOutcome ReadList(Source& source, BreltList<int>& list) {
    ListTarget target(list);
    return Reader<Source, ListTarget>(source, target, CurrentMaxSize()).Read();
}

// Writes into a stream with its own int output, flushing at each line break.
class StreamSink {
  public:
    explicit StreamSink(std::ostream& out) : out_(out) {}

    // Whether the sink wants no more text; a stream takes all of it.
    static bool Full() { return false; }

    // Writes a number.
    void Number(int number) { out_ << number; }

    // Writes a separator.
    void Character(char character) { out_ << character; }

    // Ends the line and flushes it.
    void LineBreak() { out_ << std::endl; }

  private:
    std::ostream& out_;
};

// Appends to a text until it reaches a length; what lies beyond would be cut anyway.
class TextSink {
  public:
    TextSink(std::string& text, std::size_t limit) : text_(text), limit_(limit) {}

    // Whether the text has reached its length.
    bool Full() const { return text_.size() >= limit_; }

    // Appends a number as the classic locale writes it.
    void Number(int number) {
        char digits[16];
        const auto result = std::to_chars(digits, digits + sizeof digits, number);
        text_.append(digits, result.ptr);
    }

    // Appends a separator.
    void Character(char character) { text_ += character; }

    // Appends a line feed.
    void LineBreak() { text_ += '\n'; }

  private:
    std::string& text_;
    const std::size_t limit_;
};

// Gathers ascending values into runs of a common difference and writes each finished run as a
// value, a pair or a range, counting the pieces on the line.
template <typename Sink>
class RunWriter {
  public:
    RunWriter(Sink& sink, int defaultStep, bool breakLines)
        : sink_(sink), defaultStep_(defaultStep), breakLines_(breakLines) {}

    // Takes the next value, writing the run that it cannot join.
    void Add(int value) {
        if (length_ == 0) {
            StartRun(value);
        } else if (length_ == 1) {
            difference_ = Difference(value, first_);
            last_ = value;
            length_ = 2;
        } else if (Difference(value, last_) == difference_) {
            last_ = value;
            ++length_;
        } else if (length_ == 2) {
            // The pair's first value stands alone; its second may begin a run with the new one.
            sink_.Number(first_);
            sink_.Character(',');
            pieces_ += 1;
            first_ = last_;
            last_ = value;
            difference_ = Difference(value, first_);
        } else {
            WriteRange();
            sink_.Character(',');
            pieces_ += 2;
            StartRun(value);
        }
        if (breakLines_ && pieces_ >= PIECES_PER_LINE) {
            sink_.LineBreak();
            pieces_ = 0;
        }
    }

    // Writes the last run, without a separator after it.
    void Finish() {
        if (length_ == 1) {
            sink_.Number(first_);
        } else if (length_ == 2) {
            sink_.Number(first_);
            sink_.Character(',');
            sink_.Number(last_);
        } else {
            WriteRange();
        }
    }

  private:
    // The difference of two values; the pair INT_MIN, INT_MAX would overflow an int.
    static std::int64_t Difference(int value, int previous) {
        return std::int64_t{value} - std::int64_t{previous};
    }

    // Opens a run of one value.
    void StartRun(int value) {
        first_ = value;
        last_ = value;
        length_ = 1;
    }

    // Writes a run of three or more values, with its step unless it is the default one. Three
    // distinct ints with a common difference keep that difference within the int range.
    void WriteRange() {
        sink_.Number(first_);
        sink_.Character('-');
        sink_.Number(last_);
        if (difference_ != defaultStep_) {
            sink_.Character(':');
            sink_.Number(static_cast<int>(difference_));
        }
    }

    Sink& sink_;
    const int defaultStep_;
    const bool breakLines_;
    int first_ = 0;
    int last_ = 0;
    std::size_t length_ = 0;
    std::int64_t difference_ = 0;
    int pieces_ = 0;
};

// Writes the values of the list, stopping early when the sink is full.
template <typename Sink>
void WriteValues(const BreltList<int>& list, bool breakLines, Sink& sink) {
    if (list.size() == 0) {
        return;
    }
    if (list.size() == 1) {
        sink.Number(*list.begin());
        return;
    }
    RunWriter<Sink> writer(sink, list.default_step, breakLines);
    for (const int value : list) {
        if (sink.Full()) {
            return;
        }
        writer.Add(value);
    }
    writer.Finish();
}

// The values read before a failure as its message shows them: on one line, and no longer than
// the message keeps, so that a failure after millions of values writes only what it shows.
std::string ValuesForMessage(const BreltList<int>& list) {
    std::string text;
    TextSink sink(text, KPL_Failure::MAX_MESSAGE_LENGTH);
    WriteValues(list, false, sink);
    return text;
}

// The reason that the message of a failed reading begins with.
std::string Reason(const ReadOutcome& outcome) {
    switch (outcome.error) {
        case ReadError::NUMBER_UNREADABLE:
            return Messages::BRELT_LIST_NUMBER_UNREADABLE;
        case ReadError::SEPARATOR_UNREADABLE:
            return Messages::BRELT_LIST_SEPARATOR_UNREADABLE;
        case ReadError::SEPARATOR_UNEXPECTED:
            return KPL_Failure::Format(Messages::BRELT_LIST_SEPARATOR_UNEXPECTED,
                                       outcome.separator);
        case ReadError::TOO_LONG:
            return KPL_Failure::Format(Messages::BRELT_LIST_TOO_LONG, outcome.maxSize);
        case ReadError::NONE:
            break;
    }
    return std::string();
}

// Throws the failure of a reading that stopped short; the list holds the values read before.
void ThrowIfFailed(const ReadOutcome& outcome, const BreltList<int>& list) {
    if (outcome.error != ReadError::NONE) {
        throw KPL_Failure(KPL_Failure::Format(Messages::BRELT_LIST_FAILURE, Reason(outcome).c_str(),
                                              ValuesForMessage(list).c_str()),
                          Messages::BRELT_LIST_TAG);
    }
}

}  // namespace

std::istream& operator>>(std::istream& in, BreltList<int>& list) {
    StreamSource source(in);
    ThrowIfFailed(ReadList(source, list), list);
    return in;
}

std::ostream& operator<<(std::ostream& out, const BreltList<int>& list) {
    StreamSink sink(out);
    WriteValues(list, list.break_lines, sink);
    LogWritten(list.size());
    return out;
}

void read_brelt_list(const std::string& text, BreltList<int>& list) {
    TextSource source(text);
    ThrowIfFailed(ReadList(source, list), list);
}

bool try_read_brelt_list(const std::string& text, BreltList<int>& list) {
    TextSource source(text);
    return ReadList(source, list).error == ReadError::NONE;
}

bool is_brelt_list(const std::string& text) {
    const std::size_t maxSize = CurrentMaxSize();
    // Without trace lines only a step of 0 logs, so a quiet count that meets none and stays within
    // the bound gives the answer, and the log, of the full reading.
    if (!KPL_LogMacros::IsLogEnabled(KPL_LogMacros::LOG_TRACE)) {
        TextSource countedSource(text);
        CountingTarget counter;
        Reader<TextSource, CountingTarget, false> counting(countedSource, counter, maxSize);
        const ReadError error = counting.Read().error;
        if (!counting.ZeroStepMet() && !counter.Undecided()) {
            return error == ReadError::NONE;
        }
    }
    TextSource source(text);
    ProgressionTarget target;
    return Reader<TextSource, ProgressionTarget>(source, target, maxSize).Read().error ==
           ReadError::NONE;
}

BreltList<int> values_of_brelt_list(const std::string& text) {
    TextSource source(text);
    BreltList<int> list;
    ListTarget target(list);
    Reader<TextSource, ListTarget, false>(source, target, std::numeric_limits<std::size_t>::max())
        .Read();
    return list;
}

void visit_brelt_list_values(const std::string& text, const std::function<void(int)>& visit) {
    TextSource source(text);
    ProgressionTarget target;
    Reader<TextSource, ProgressionTarget, false>(source, target,
                                                 std::numeric_limits<std::size_t>::max())
        .Read();
    target.VisitValues(visit);
}

std::string write_brelt_list(const BreltList<int>& list) {
    std::string text;
    TextSink sink(text, std::string::npos);
    WriteValues(list, list.break_lines, sink);
    LogWritten(list.size());
    return text;
}

std::size_t SetBreltListMaxSize(std::size_t maxElements) {
    return maxSizeSetting.exchange(maxElements, std::memory_order_relaxed);
}
