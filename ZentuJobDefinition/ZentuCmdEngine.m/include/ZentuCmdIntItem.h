#pragma once

#include <memory>
#include <string>

#include "ZentuCmdItem.h"

// An item holding a signed 32-bit integer, taken as a value or from a text that must be one.
class ZENTU_CMD_ENGINE_API ZentuCmdIntItem : public ZentuCmdItem {
  public:
    // An item holding the integer that text writes; throws KPL_Failure when the text is not one.
    ZentuCmdIntItem(const std::string& name, const std::string& text);
    // An item holding value.
    ZentuCmdIntItem(const std::string& name, int value);
    ZentuCmdIntItem(const ZentuCmdIntItem& other);
    ZentuCmdIntItem& operator=(const ZentuCmdIntItem& other);
    ~ZentuCmdIntItem() override;

    // The decimal text of the value; HasString() stays false.
    const std::string GetString() const override;  // NOLINT(readability-const-return-type)
    // Always true.
    bool HasInteger() const override;
    // The value.
    int GetInteger() const override;

    std::unique_ptr<ZentuCmdItem> Clone() const override;

  private:
    int value_;
};
