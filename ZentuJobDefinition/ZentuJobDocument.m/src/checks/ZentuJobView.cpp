#include "ZentuJobView.h"

#include "ZentuCmd.h"
#include "ZentuTypedJob.h"
#include "document/ZentuCommandItems.h"

ZentuJobView::ZentuJobView(const ZentuTypedJob& job) : job_(job) {
    const auto& documentCommands = job.Document().Commands();
    commands_.assign(documentCommands.size(), nullptr);
    traced_.assign(documentCommands.size(), false);
    firstItems_.reserve(documentCommands.size() + 1);
    firstItems_.push_back(0);
    for (const ZentuDocumentCommand& command : documentCommands) {
        firstItems_.push_back(firstItems_.back() + command.items.size());
    }
    items_.assign(firstItems_.back(), nullptr);
    for (const ZentuCmd& command : job.Container()) {
        const ZentuOrigin origin = job.OriginOf(command);
        // Generated commands carry the origin of what refers to them; the command read from the
        // file comes first in its kind's sequence and bears the keyword as written.
        if (origin.command == ZentuOrigin::NONE || commands_[origin.command] != nullptr ||
            command.GetName() != documentCommands[origin.command].keyword) {
            continue;
        }
        commands_[origin.command] = &command;
    }
}

void ZentuJobView::TraceItems(std::size_t c) const {
    traced_[c] = true;
    if (commands_[c] == nullptr) {
        return;
    }
    const ZentuOrigin origin = job_.OriginOf(*commands_[c]);
    zentu_for_each_item(*commands_[c], [&](const ZentuCmdItem& item) {
        const ZentuOrigin itemOrigin = job_.ItemOriginOf(origin, item);
        if (itemOrigin.item != ZentuOrigin::NONE) {
            items_[firstItems_[c] + itemOrigin.item] = &item;
        }
    });
}
