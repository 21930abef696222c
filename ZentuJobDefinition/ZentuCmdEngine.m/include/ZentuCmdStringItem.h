#pragma once

#include <memory>
#include <string>

#include "ZentuCmdRawStringItem.h"

// An item holding a text in upper case: the bytes 'a' to 'z' before the first NUL are raised.
class ZENTU_CMD_ENGINE_API ZentuCmdStringItem : public ZentuCmdRawStringItem {
  public:
    // An item holding text in upper case.
    ZentuCmdStringItem(const std::string& name, const std::string& text);
    ZentuCmdStringItem(const ZentuCmdStringItem& other);
    ZentuCmdStringItem& operator=(const ZentuCmdStringItem& other);
    ~ZentuCmdStringItem() override;

    std::unique_ptr<ZentuCmdItem> Clone() const override;
};
