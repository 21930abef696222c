#include "ZentuCmdContainerIterator.h"

#include <cassert>

#include "ZentuCmdContainer.h"

ZentuCmdContainerIterator::ZentuCmdContainerIterator(const ZentuCmdContainer& container)
    : sequences_(&container.commands_), kind_(0), entry_(container.commands_.front().begin()) {
    IterateToNextItem();
}

ZentuCmdContainerIterator& ZentuCmdContainerIterator::operator++() {
    if (!AtEnd()) {
        ++entry_;
        IterateToNextItem();
    }
    return *this;
}

ZentuCmdContainerIterator ZentuCmdContainerIterator::operator++(int) {
    ZentuCmdContainerIterator before = *this;
    ++*this;
    return before;
}

ZentuCmd& ZentuCmdContainerIterator::operator*() {
    assert(!AtEnd());
    return **entry_;
}

const ZentuCmd& ZentuCmdContainerIterator::operator*() const {
    assert(!AtEnd());
    return **entry_;
}

ZentuCmd* ZentuCmdContainerIterator::operator->() {
    return &**this;
}

const ZentuCmd* ZentuCmdContainerIterator::operator->() const {
    return &**this;
}

bool ZentuCmdContainerIterator::operator==(const ZentuCmdContainerIterator& other) const {
    return sequences_ == other.sequences_ && kind_ == other.kind_ &&
           (AtEnd() || entry_ == other.entry_);
}

void ZentuCmdContainerIterator::end() {
    kind_ = ZentuCmdDefs::CMD_KIND_COUNT;
}

void ZentuCmdContainerIterator::IterateToNextItem() {
    while (!AtEnd() && entry_ == (*sequences_)[kind_].end()) {
        ++kind_;
        if (!AtEnd()) {
            entry_ = (*sequences_)[kind_].begin();
        }
    }
}
