#pragma once

#include <memory>
#include <string>

#include "ZentuCmdItem.h"

// An item holding a real number, taken as a value or from a text that must be one.
class ZENTU_CMD_ENGINE_API ZentuCmdScalarItem : public ZentuCmdItem {
  public:
    // An item holding the number that text writes; throws KPL_Failure when the text is not one.
    ZentuCmdScalarItem(const std::string& name, const std::string& text);
    // An item holding value.
    ZentuCmdScalarItem(const std::string& name, double value);
    ZentuCmdScalarItem(const ZentuCmdScalarItem& other);
    ZentuCmdScalarItem& operator=(const ZentuCmdScalarItem& other);
    ~ZentuCmdScalarItem() override;

    // The shortest text that reads back to the value; HasString() stays false.
    const std::string GetString() const override;  // NOLINT(readability-const-return-type)
    // Always true.
    bool HasReal() const override;
    // The value.
    double GetReal() const override;

    std::unique_ptr<ZentuCmdItem> Clone() const override;

  private:
    double value_;
};
