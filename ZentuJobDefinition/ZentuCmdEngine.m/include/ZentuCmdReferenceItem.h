#pragma once

#include <memory>
#include <string>

#include "ZentuCmdItem.h"

// An item that refers to another command of the same container without owning it; its text is
// the identifier of the command that it refers to.
class ZENTU_CMD_ENGINE_API ZentuCmdReferenceItem : public ZentuCmdItem {
  public:
    // An item that refers to target, which must outlive it.
    ZentuCmdReferenceItem(const std::string& name, const ZentuCmd& target);
    ZentuCmdReferenceItem(const ZentuCmdReferenceItem& other);
    ZentuCmdReferenceItem& operator=(const ZentuCmdReferenceItem& other);
    ~ZentuCmdReferenceItem() override;

    // Always true.
    bool HasString() const override;
    // The text of the first ID_NAME item of the target; empty when it has none.
    const std::string GetString() const override;  // NOLINT(readability-const-return-type)

    // Whether the item refers to a command.
    bool HasReference() const override;
    // The command that the item refers to.
    const ZentuCmd* GetReference() const override;

    // Makes the item refer to target instead.
    void AddReference(const ZentuCmd& target) override;

    std::unique_ptr<ZentuCmdItem> Clone() const override;

  private:
    // Lets the library read the target's identifier in place where copying it would be its main
    // cost.
    friend struct ZentuOwnItems;

    const ZentuCmd* reference_;
};
