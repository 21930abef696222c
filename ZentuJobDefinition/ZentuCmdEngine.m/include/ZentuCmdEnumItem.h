#pragma once

#include <memory>
#include <string>

#include "KeywordsDictionary.h"
#include "ZentuCmdItem.h"

// An item holding one keyword out of the set that its description declares, written in full or
// abbreviated to a prefix that one keyword alone continues.
class ZENTU_CMD_ENGINE_API ZentuCmdEnumItem : public ZentuCmdItem {
  public:
    // An item holding the keyword that text names in keywords, looked up in upper case; throws
    // KPL_Failure listing the valid keywords when the text names none or more than one. The
    // dictionary is only read here; the item keeps no reference to it.
    ZentuCmdEnumItem(const std::string& name, const std::string& text,
                     const KeywordsDictionary<int>& keywords);
    ZentuCmdEnumItem(const ZentuCmdEnumItem& other);
    ZentuCmdEnumItem& operator=(const ZentuCmdEnumItem& other);
    ~ZentuCmdEnumItem() override;

    // Always true.
    bool HasString() const override;
    // The text in upper case as it was written, abbreviation included.
    const std::string GetString() const override;  // NOLINT(readability-const-return-type)
    // Always true.
    bool HasInteger() const override;
    // The keyword's value.
    int GetInteger() const override;
    // Always true.
    bool HasEnum() const override;
    // The keyword's value as a keyword value.
    ZentuCmdItemDefs::EnumValue GetEnum() const override;

    std::unique_ptr<ZentuCmdItem> Clone() const override;

  private:
    // Lets the library read the text in place where copying it would be its main cost.
    friend struct ZentuOwnItems;

    // Throws the refusal of text for the item name, listing the keywords that may be written.
    [[noreturn]] static void print_error_msg(const std::string& name, const std::string& text,
                                             const KeywordsDictionary<int>& keywords);

    int value_;
    std::string text_;
};
