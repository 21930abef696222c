#pragma once

#include <memory>
#include <string>
#include <vector>

#include "BreltList.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuMatrix.h"

class ZentuCmd;

// The abstract base of every item: a name, and one set of type queries and getters that every
// item answers, with neutral answers for the readings that a class does not have.
class ZENTU_CMD_ENGINE_API ZentuCmdItem {
  public:
    virtual ~ZentuCmdItem();

    // The item's name as it was given at construction.
    const std::string& GetName() const { return name_; }

    // Whether the item has a text reading.
    virtual bool HasString() const;
    // The item's text; empty in the base.
    virtual const std::string GetString() const;  // NOLINT(readability-const-return-type)

    // Whether the item has an integer reading.
    virtual bool HasInteger() const;
    // The integer reading; 0 in the base.
    virtual int GetInteger() const;

    // Whether the item has a real reading.
    virtual bool HasReal() const;
    // The real reading; 0.0 in the base.
    virtual double GetReal() const;

    // Whether the item has a three-vector reading.
    virtual bool HasVector3d() const;
    // The three-vector reading; (0, 0, 0) in the base.
    virtual ZentuMatrix<3, 1, double> GetVector3d() const;

    // Whether the item has a keyword reading.
    virtual bool HasEnum() const;
    // The keyword value; NO_ENUM_VALUE (-1) in the base.
    virtual ZentuCmdItemDefs::EnumValue GetEnum() const;

    // Whether the item has a list-of-texts reading.
    virtual bool HasList() const;
    // The list of texts; empty in the base.
    virtual std::vector<std::string> GetList() const;

    // Whether the item has an integer-list reading.
    virtual bool HasBreltList() const;
    // The integer list; in the base a list holding the single value 0.
    virtual BreltList<int> GetBreltList() const;

    // Whether the item refers to a command.
    virtual bool HasReference() const;
    // The command that the item refers to, or null.
    virtual const ZentuCmd* GetReference() const;

    // Whether the item has the reading of the given data type; RAW_STRING, RESERVED, AUTO and
    // values outside the enumeration answer false.
    virtual bool HasType(ZentuCmdItemDefs::DataType type) const;

    // Offers the item a command whose identifier its text names; the base ignores it.
    virtual void AddReference(const ZentuCmd& target);

    // A new, independent copy of the item, of its own class.
    virtual std::unique_ptr<ZentuCmdItem> Clone() const = 0;

  protected:
    // An item of the given name.
    explicit ZentuCmdItem(const std::string& name);
    ZentuCmdItem(const ZentuCmdItem& other);
    ZentuCmdItem& operator=(const ZentuCmdItem& other);

  private:
    std::string name_;
};
