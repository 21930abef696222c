#pragma once

#include <memory>
#include <string>

#include "ZentuCmdItem.h"

// An item holding a text exactly as it was given.
class ZENTU_CMD_ENGINE_API ZentuCmdRawStringItem : public ZentuCmdItem {
  public:
    // An item holding text unchanged.
    ZentuCmdRawStringItem(const std::string& name, const std::string& text);
    ZentuCmdRawStringItem(const ZentuCmdRawStringItem& other);
    ZentuCmdRawStringItem& operator=(const ZentuCmdRawStringItem& other);
    ~ZentuCmdRawStringItem() override;

    // Always true.
    bool HasString() const override;
    // The stored text.
    const std::string GetString() const override;  // NOLINT(readability-const-return-type)

    std::unique_ptr<ZentuCmdItem> Clone() const override;

  private:
    // Lets the library read the text in place where copying it would be its main cost.
    friend struct ZentuOwnItems;

    std::string text_;
};
