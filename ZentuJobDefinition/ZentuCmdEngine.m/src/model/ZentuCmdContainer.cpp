#include "ZentuCmdContainer.h"

#include <cassert>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "ZentuCmdAutoItem.h"
#include "ZentuCmdReferenceItem.h"
#include "items/ZentuOwnItems.h"
#include "model/ZentuCmdIdentifierIndex.h"
#include "model/ZentuReadOnlyView.h"

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

namespace {

// The placeholder command with the sequence of every item kind created, so that viewing its items
// creates nothing: it is shared by all containers, on every thread.
ZentuCmd placeholder_command() {
    ZentuCmd placeholder(Cmd::CMD_PLACEHOLDER, "PLACEHOLDER");
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        placeholder.Items(static_cast<CmdItem>(kind));
    }
    return placeholder;
}

// The first command in container order under each identifier. Building it once makes resolving
// all references linear in the container size.
template <typename Sequences>
ZentuCmdIdentifier::Index index_by_identifier(const Sequences& sequences) {
    std::size_t count = 0;
    for (const auto& sequence : sequences) {
        count += sequence.size();
    }
    ZentuCmdIdentifier::Index index(count);
    for (const auto& sequence : sequences) {
        ZentuCmdIdentifier::add_first_by_identifier(sequence, index);
    }
    return index;
}

// The text without the blanks, tabs and line ends that ZentuStringUtil::Trim cuts.
std::string_view trimmed(std::string_view text) {
    constexpr std::string_view BLANKS = " \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(BLANKS);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

// The text under which an item looks for the command it refers to: the first entry of a list
// of several texts, otherwise the item's whole text.
std::string reference_key(const ZentuCmdItem& item) {
    if (item.HasList()) {
        std::vector<std::string> list = item.GetList();
        if (list.size() > 1) {
            return std::move(list.front());
        }
    }
    return item.GetString();
}

// The key of an item that can be read in place: an automatically typed item lists the
// comma-separated parts of its text, and a reference item has no list.
std::optional<std::string_view> reference_key_in_place(const ZentuCmdItem& item) {
    if (ZentuOwnItems::IsExactly<ZentuCmdAutoItem>(item)) {
        const std::string_view text = *ZentuOwnItems::TextOf(item);
        const std::size_t comma = text.find(',');
        return comma == std::string_view::npos ? text : trimmed(text.substr(0, comma));
    }
    if (ZentuOwnItems::IsExactly<ZentuCmdReferenceItem>(item)) {
        return ZentuOwnItems::TextInPlace(item);
    }
    return std::nullopt;
}

// Offers items the commands that their keys name. Keys read in place are looked up in batches,
// whose index slots are fetched from memory together, so that a large index costs a wait per
// batch rather than per item; any other item first resolves the batch, so that the items are
// offered their commands in container order.
class Resolver {
  public:
    explicit Resolver(const ZentuCmdIdentifier::Index& index) : index_(index) {}

    // Resolves the item now or with its batch.
    void Offer(ZentuCmdItem& item) {
        if (ZentuOwnItems::IgnoresReferences(item)) {
            return;
        }
        if (const std::optional<std::string_view> key = reference_key_in_place(item)) {
            const std::uint64_t hash = ZentuCmdIdentifier::Index::Hash(*key);
            index_.Prefetch(hash);
            batch_.push_back(Pending{&item, *key, hash});
            if (batch_.size() == BATCH_SIZE) {
                Flush();
            }
            return;
        }
        Flush();
        Bind(item, index_.Find(reference_key(item)));
    }

    // Resolves the items of the batch.
    void Flush() {
        for (const Pending& pending : batch_) {
            Bind(*pending.item, index_.Find(pending.key, pending.hash));
        }
        batch_.clear();
    }

  private:
    // An item waiting with its key.
    struct Pending {
        ZentuCmdItem* item;
        std::string_view key;
        std::uint64_t hash;
    };

    static constexpr std::size_t BATCH_SIZE = 16;

    // Offers the item the command found for it, if any.
    static void Bind(ZentuCmdItem& item, const ZentuCmd* const* target) {
        if (target != nullptr) {
            item.AddReference(**target);
        }
    }

    const ZentuCmdIdentifier::Index& index_;
    std::vector<Pending> batch_;
};

// Offers the resolver every item of the command but its identifiers, kind after kind; the kinds
// without items are passed over through the command's mask.
void offer_items(ZentuCmd& cmd, Resolver& resolver) {
    const std::uint64_t kinds = cmd.KindsWithSequences();
    for (std::size_t kind = 1; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        if ((kinds >> kind & 1U) == 0) {
            continue;
        }
        for (std::unique_ptr<ZentuCmdItem>& item : cmd.GetItemRange(static_cast<CmdItem>(kind))) {
            resolver.Offer(*item);
        }
    }
}

// The commands of a sequence whose first item of the kind has exactly the text value.
std::vector<std::reference_wrapper<ZentuCmd>> commands_with_first_item(
    const ZentuCmdContainer::CmdSequence& sequence, CmdItem item, const std::string& value) {
    std::vector<std::reference_wrapper<ZentuCmd>> found;
    for (const std::unique_ptr<ZentuCmd>& cmd : sequence) {
        if (cmd->HasItem(item, 0) && cmd->Item(item, 0).GetString() == value) {
            found.emplace_back(*cmd);
        }
    }
    return found;
}

}  // namespace

// NOLINTNEXTLINE(cert-err58-cpp): the interface declares the placeholder as a static command.
ZentuCmd ZentuCmdContainer::s_DefaultCmd = placeholder_command();

ZentuCmdContainer::ZentuCmdContainer() = default;

ZentuCmdContainer::ZentuCmdContainer(ZentuCmdContainer&& other) noexcept
    : commands_(std::move(other.commands_)) {}

ZentuCmdContainer& ZentuCmdContainer::operator=(ZentuCmdContainer&& other) noexcept {
    if (this != &other) {
        commands_ = std::move(other.commands_);
    }
    return *this;
}

ZentuCmdContainer::~ZentuCmdContainer() = default;

ZentuCmd& ZentuCmdContainer::CreateCommand(Cmd kind, const std::string& name) {
    CmdSequence& sequence = Sequence(kind);
    sequence.push_back(std::make_unique<ZentuCmd>(kind, name));
    return *sequence.back();
}

ZentuCmd& ZentuCmdContainer::CreateCommand(Cmd kind) {
    return CreateCommand(kind, ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(kind)]);
}

ZentuCmd& ZentuCmdContainer::CreateCommand(Cmd kind, const std::string& name,
                                           const std::string& idName) {
    auto cmd = std::make_unique<ZentuCmd>(kind, name);
    cmd->AddStringItem(CmdItem::ID_NAME, idName);
    CmdSequence& sequence = Sequence(kind);
    sequence.push_back(std::move(cmd));
    return *sequence.back();
}

ZentuCmd& ZentuCmdContainer::GetCommand(Cmd kind, std::size_t index) {
    return GetCommandOrFallback(kind, index);
}

const ZentuCmd& ZentuCmdContainer::GetCommand(Cmd kind, std::size_t index) const {
    return GetCommandOrFallback(kind, index);
}

ZentuCmdContainer::const_iterator ZentuCmdContainer::GetCommandBegin(Cmd kind) const {
    return Sequence(kind).begin();
}

ZentuCmdContainer::const_iterator ZentuCmdContainer::GetCommandEnd(Cmd kind) const {
    return Sequence(kind).end();
}

ZentuIteratorRange<ZentuCmdContainer::const_iterator> ZentuCmdContainer::GetCommandRange(
    Cmd kind) const {
    return {GetCommandBegin(kind), GetCommandEnd(kind)};
}

const ZentuCmdContainer::ConstCmdSequence& ZentuCmdContainer::GetCommands(Cmd kind) const {
    return ZentuReadOnlyView::of(Sequence(kind));
}

std::size_t ZentuCmdContainer::GetNumberOfCommands(Cmd kind) const {
    return Sequence(kind).size();
}

bool ZentuCmdContainer::HasCommand(Cmd kind) const {
    return !Sequence(kind).empty();
}

bool ZentuCmdContainer::HasCommandWithReference(Cmd kind, CmdItem item) const {
    return HasCommandWithType(kind, item, DataType::REFERENCE);
}

bool ZentuCmdContainer::HasCommandWithType(Cmd kind, CmdItem item, DataType type) const {
    if (!HasCommand(kind)) {
        return false;
    }
    const ZentuCmd& first = *Sequence(kind).front();
    return first.HasItem(item, 0) && first.Item(item, 0).HasType(type);
}

std::vector<std::reference_wrapper<ZentuCmd>> ZentuCmdContainer::Filter(Cmd kind, CmdItem item,
                                                                        const std::string& value) {
    return commands_with_first_item(Sequence(kind), item, value);
}

std::vector<std::reference_wrapper<const ZentuCmd>> ZentuCmdContainer::Filter(
    Cmd kind, CmdItem item, const std::string& value) const {
    std::vector<std::reference_wrapper<ZentuCmd>> found =
        commands_with_first_item(Sequence(kind), item, value);
    return {found.begin(), found.end()};
}

ZentuCmdContainer::const_iterator ZentuCmdContainer::Erase(Cmd kind, const_iterator position) {
    return Sequence(kind).erase(position);
}

void ZentuCmdContainer::MoveCmd(Cmd from, std::size_t index, Cmd to) {
    CmdSequence& source = Sequence(from);
    if (index >= source.size()) {
        return;
    }
    CmdSequence& target = Sequence(to);
    // Growing the target first means that nothing can fail once the command has been taken out.
    target.reserve(target.size() + 1);
    std::unique_ptr<ZentuCmd> cmd = std::move(source[index]);
    source.erase(source.begin() + static_cast<CmdSequence::difference_type>(index));
    cmd->SetType(to);
    cmd->SetName(ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(to)]);
    target.push_back(std::move(cmd));
}

void ZentuCmdContainer::CreateReferences() {
    const ZentuCmdIdentifier::Index index = index_by_identifier(commands_);
    if (index.Empty()) {
        return;
    }
    Resolver resolver(index);
    for (CmdSequence& sequence : commands_) {
        for (std::size_t position = 0; position < sequence.size(); ++position) {
            if (position + ZentuCmdIdentifier::PREFETCH_DISTANCE < sequence.size()) {
                ZentuCmdIdentifier::prefetch(
                    *sequence[position + ZentuCmdIdentifier::PREFETCH_DISTANCE]);
            }
            offer_items(*sequence[position], resolver);
        }
    }
    resolver.Flush();
}

ZentuCmdContainerIterator ZentuCmdContainer::begin() const {
    return ZentuCmdContainerIterator(*this);
}

ZentuCmdContainerIterator ZentuCmdContainer::end() const {
    ZentuCmdContainerIterator last(*this);
    last.end();
    return last;
}

ZentuCmdContainer::CmdSequence& ZentuCmdContainer::Sequence(Cmd kind) {
    assert(static_cast<std::size_t>(kind) < commands_.size());
    return commands_[static_cast<std::size_t>(kind)];
}

const ZentuCmdContainer::CmdSequence& ZentuCmdContainer::Sequence(Cmd kind) const {
    assert(static_cast<std::size_t>(kind) < commands_.size());
    return commands_[static_cast<std::size_t>(kind)];
}

ZentuCmd& ZentuCmdContainer::GetCommandOrFallback(Cmd kind, std::size_t index) const {
    const CmdSequence& sequence = Sequence(kind);
    if (index < sequence.size()) {
        return *sequence[index];
    }
    if (!sequence.empty()) {
        return *sequence.front();
    }
    return s_DefaultCmd;
}
