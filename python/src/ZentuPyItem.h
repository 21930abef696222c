#pragma once

#include <pybind11/pybind11.h>

#include "ZentuCmdItemDefs.h"
#include "ZentuJobSchema.h"
#include "ZentuPyJobState.h"

// An item of a command in one reading of a job; what a script asks of it is taken from the
// reading only then, so that reading a job does no work per item.
class ZentuPyItem {
  public:
    ZentuPyItem(ZentuReading reading, const ZentuCmd& command, ZentuCmdItemDefs::CmdItem kind,
                const ZentuCmdItem& item);

    // The item as to_dict() gives it.
    ZentuJson Entry() const;

  private:
    ZentuReading reading_;
    const ZentuCmd* command_;
    ZentuCmdItemDefs::CmdItem kind_;
    const ZentuCmdItem* item_;
};

// Declares zentu.Item.
void bind_item(pybind11::module_& module);
