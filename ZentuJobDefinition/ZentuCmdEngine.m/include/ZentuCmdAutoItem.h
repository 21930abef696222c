#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "BreltList.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuMatrix.h"

// An item whose type is decided by its text: construction works out every reading that the text
// allows (integer, real, three-vector, keyword, list of texts, integer list) and keeps them all.
// It also accepts a reference to the command whose identifier its text names.
class ZENTU_CMD_ENGINE_API ZentuCmdAutoItem : public ZentuCmdItem {
  public:
    // An item holding text upper-cased and trimmed, with every reading it allows; keywords are
    // looked up whole in keywordMap. Never refuses a text.
    ZentuCmdAutoItem(const std::string& name, const std::string& text,
                     const ZentuCmdItemDefs::KeywordMap& keywordMap);
    ZentuCmdAutoItem(const ZentuCmdAutoItem& other);
    ZentuCmdAutoItem& operator=(const ZentuCmdAutoItem& other);
    ~ZentuCmdAutoItem() override;

    // Always true.
    bool HasString() const override;
    // The text, upper-cased and trimmed.
    const std::string GetString() const override;  // NOLINT(readability-const-return-type)
    // Whether the text is one integer.
    bool HasInteger() const override;
    // The integer reading, or 0.
    int GetInteger() const override;
    // Whether the text is one number.
    bool HasReal() const override;
    // The real reading, or 0.0.
    double GetReal() const override;
    // Whether the text is three comma-separated numbers and not quoted.
    bool HasVector3d() const override;
    // The three numbers; a part that is no number gives 0.0.
    ZentuMatrix<3, 1, double> GetVector3d() const override;
    // Whether the whole text is a keyword of the keyword map.
    bool HasEnum() const override;
    // The keyword's value, or NO_ENUM_VALUE.
    ZentuCmdItemDefs::EnumValue GetEnum() const override;
    // Whether the text has at least one comma-separated part.
    bool HasList() const override;
    // The comma-separated parts, each trimmed.
    std::vector<std::string> GetList() const override;
    // Whether the text is an integer list and not quoted.
    bool HasBreltList() const override;
    // The integer list, or an empty one.
    BreltList<int> GetBreltList() const override;
    // Whether a command has been attached.
    bool HasReference() const override;
    // The attached command, or null.
    const ZentuCmd* GetReference() const override;
    // Whether the text allows the reading of the data type; false outside 0 to 10.
    bool HasType(ZentuCmdItemDefs::DataType type) const override;
    // Attaches target; a later call replaces it.
    void AddReference(const ZentuCmd& target) override;

    std::unique_ptr<ZentuCmdItem> Clone() const override;

  private:
    // Lets the library read the text in place where copying it would be its main cost.
    friend struct ZentuOwnItems;

    bool Has(ZentuCmdItemDefs::DataType type) const;
    void Set(ZentuCmdItemDefs::DataType type);
    void ReadNumbers();
    void ReadKeyword(const ZentuCmdItemDefs::KeywordMap& keywordMap);
    bool HasVectorShape() const;

    // Only the text and what cannot be worked out of it again are kept: the other readings are
    // taken from the text when asked for, so that an item costs memory in proportion to its text
    // and an integer list such as 1-9999999 is not held value by value.
    std::string text_;
    const ZentuCmd* reference_ = nullptr;
    ZentuCmdItemDefs::EnumValue enum_value_ = ZentuCmdItemDefs::NO_ENUM_VALUE;
    std::uint16_t readings_ = 0;
};
