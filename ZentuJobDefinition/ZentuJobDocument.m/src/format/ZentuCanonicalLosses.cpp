#include "ZentuCanonicalLosses.h"

#include <algorithm>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItem_Util.h"
#include "ZentuJobDocumentMessages.h"
#include "ZentuJobSchema.h"
#include "ZentuStringUtil.h"
#include "ZentuTypedJob.h"

namespace Messages = ZentuJobDocumentMessages;
using ZentuCmdItemDefs::CmdItem;

namespace {

// How many places a description names of each kind of loss.
constexpr std::size_t LISTED_PLACES = 3;

// The byte where the writer's C output stops, and the one that splits a value into lines.
constexpr char NUL = '\0';
constexpr char LINE_FEED = '\n';

// A text as the reader compares it: letter case and the blanks around it do not count.
std::string normalised(std::string text) {
    ZentuStringUtil::Trim(text);
    return ZentuStringUtil::to_upper(std::move(text));
}

// The writer puts a value on the item's line unless the item is a list, so the lines of any other
// value after the first would read as items of their own.
bool reads_back_whole(const ZentuCmdItem& item, const std::string& text) {
    if (text.find(NUL) != std::string::npos) {
        return false;
    }
    return text.find(LINE_FEED) == std::string::npos || item.HasBreltList() ||
           ZentuCmdItem_Util::has_item_list_with_char(item, LINE_FEED);
}

// "1 comment line", "3 comment lines".
std::string counted(std::size_t count, const char* noun) {
    return KPL_Failure::Format(Messages::LOSS_COUNT, count, noun,
                               count == 1 ? "" : Messages::LOSS_PLURAL);
}

// The parts joined by separator and the last one by lastSeparator.
std::string joined(const std::vector<std::string>& parts, const char* separator,
                   const char* lastSeparator) {
    std::string text;
    for (std::size_t index = 0; index < parts.size(); ++index) {
        if (index > 0) {
            text += index + 1 == parts.size() ? lastSeparator : separator;
        }
        text += parts[index];
    }
    return text;
}

// The first places, in brackets after prefix, marked when there are more.
std::string places(const std::vector<std::string>& all, const std::string& prefix = {}) {
    const std::vector<std::string> first(
        all.begin(),
        all.begin() + static_cast<std::ptrdiff_t>(std::min(all.size(), LISTED_PLACES)));
    std::string text = prefix + joined(first, Messages::LIST_SEPARATOR, Messages::LIST_SEPARATOR);
    if (all.size() > first.size()) {
        text += Messages::LIST_CUT_SHORT;
    }
    return KPL_Failure::Format(Messages::LOSS_PLACES, text.c_str());
}

// "(line 12)", or "(lines 12, 15)".
std::string line_places(const std::vector<std::size_t>& lines) {
    if (lines.size() == 1) {
        return places({KPL_Failure::Format(Messages::LOSS_LINE, lines.front())});
    }
    std::vector<std::string> numbers;
    numbers.reserve(lines.size());
    for (std::size_t line : lines) {
        numbers.push_back(std::to_string(line));
    }
    return places(numbers, Messages::LOSS_LINES);
}

// "(line 5: 1.0 -> 1, ...)", each text quoted short.
std::string rewrite_places(const std::vector<ZentuRewrittenText>& texts) {
    std::vector<std::string> rewrites;
    rewrites.reserve(texts.size());
    for (const ZentuRewrittenText& text : texts) {
        rewrites.push_back(KPL_Failure::Format(Messages::LOSS_REWRITTEN, text.line,
                                               ZentuStringUtil::excerpt(text.written).c_str(),
                                               ZentuStringUtil::excerpt(text.rewritten).c_str()));
    }
    return places(rewrites);
}

// Collects the parts of a description, each kind of loss with its count and places, and the verb
// before the first of each verb's kinds.
class LossSentence {
  public:
    // The verb that the next part counted starts with.
    void Verb(const char* verb) { verb_ = verb; }

    // A part that counts a kind of loss; nothing when there is none of it.
    void Add(std::size_t count, const char* noun, const std::string& where) {
        if (count == 0) {
            return;
        }
        std::string part = verb_ == nullptr ? std::string() : std::string(verb_) + " ";
        parts_.push_back(part + counted(count, noun) + where);
        verb_ = nullptr;
    }

    // The parts as one list.
    std::string Text() const {
        return joined(parts_, Messages::LIST_SEPARATOR, Messages::LIST_LAST_SEPARATOR);
    }

  private:
    const char* verb_ = nullptr;
    std::vector<std::string> parts_;
};

// The writer writes no comment.
void find_comments(const ZentuJobDocument& document, ZentuCanonicalLosses& losses) {
    const std::vector<ZentuDocumentLine>& lines = document.Lines();
    for (std::size_t number = 1; number <= lines.size(); ++number) {
        if (lines[number - 1].scanned.kind == ZentuParLine::Kind::COMMENT) {
            losses.comment_lines.push_back(number);
        }
    }
}

// The reader drops what the schema does not describe: every item of an undescribed command, and
// the undescribed items of the others.
void find_undescribed(const ZentuJobDocument& document, const ZentuJobSchema& schema,
                      ZentuCanonicalLosses& losses) {
    for (const ZentuDocumentCommand& command : document.Commands()) {
        const ZentuCommandSchema* described =
            schema.FindCommand(ZentuStringUtil::to_upper(command.keyword));
        if (described == nullptr) {
            if (!command.items.empty()) {
                losses.undescribed_commands.push_back(command.line);
            }
            continue;
        }
        for (const ZentuDocumentItem& item : command.items) {
            if (described->FindItem(ZentuStringUtil::to_upper(item.name)) == nullptr) {
                losses.undescribed_items.push_back(item.line);
            }
        }
    }
}

// Compares each item read from the file with the text that the writer writes for it.
void find_rewritten(const ZentuTypedJob& job, ZentuCanonicalLosses& losses) {
    for (const ZentuCmd& command : job.Container()) {
        const ZentuOrigin commandOrigin = job.OriginOf(command);
        for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
            for (const auto& item : command.GetItemRange(static_cast<CmdItem>(kind))) {
                const ZentuOrigin origin = job.ItemOriginOf(commandOrigin, *item);
                if (origin.item == ZentuOrigin::NONE) {
                    continue;
                }
                const ZentuDocumentItem& read =
                    job.Document().Commands()[origin.command].items[origin.item];
                const std::string text = item->GetString();
                if (!reads_back_whole(*item, text)) {
                    losses.cut_values.push_back(read.line);
                } else if (normalised(text) != normalised(read.value)) {
                    losses.rewritten_numbers.push_back({read.line, read.value, text});
                }
            }
        }
    }
    std::sort(losses.cut_values.begin(), losses.cut_values.end());
    std::sort(
        losses.rewritten_numbers.begin(), losses.rewritten_numbers.end(),
        [](const ZentuRewrittenText& a, const ZentuRewrittenText& b) { return a.line < b.line; });
}

}  // namespace

ZentuCanonicalLosses ZentuCanonicalLosses::Of(const ZentuTypedJob& job,
                                              const ZentuJobSchema& schema) {
    ZentuCanonicalLosses losses;
    find_comments(job.Document(), losses);
    find_undescribed(job.Document(), schema, losses);
    find_rewritten(job, losses);
    return losses;
}

bool ZentuCanonicalLosses::Empty() const {
    return comment_lines.empty() && undescribed_commands.empty() && undescribed_items.empty() &&
           rewritten_numbers.empty() && cut_values.empty();
}

std::string ZentuCanonicalLosses::Describe() const {
    LossSentence sentence;
    sentence.Verb(Messages::LOSS_DROP);
    sentence.Add(comment_lines.size(), Messages::LOSS_COMMENT_LINE, {});
    sentence.Add(undescribed_commands.size(), Messages::LOSS_UNDESCRIBED_COMMAND,
                 line_places(undescribed_commands));
    sentence.Add(undescribed_items.size(), Messages::LOSS_UNDESCRIBED_ITEM,
                 line_places(undescribed_items));
    sentence.Verb(Messages::LOSS_REWRITE);
    sentence.Add(rewritten_numbers.size(), Messages::LOSS_NUMBER_TEXT,
                 rewrite_places(rewritten_numbers));
    sentence.Verb(Messages::LOSS_CUT);
    sentence.Add(cut_values.size(), Messages::LOSS_VALUE, line_places(cut_values));
    return sentence.Text();
}
