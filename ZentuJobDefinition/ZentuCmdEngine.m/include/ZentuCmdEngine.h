#pragma once

// Everything a host program needs: the exported classes of ZentuCmdEngine and the interfaces of
// ZentuUtilities that they use.

#include "BreltList.h"
#include "KPL_Backtrace.h"
#include "KPL_Failure.h"
#include "KPL_LogMacros.h"
#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdContainerIterator.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuCmdReferenceItem.h"
#include "ZentuCmdStringItem.h"
#include "ZentuFileUtil.h"
#include "ZentuFormatUtil.h"
#include "ZentuIteratorRange.h"
#include "ZentuMatrix.h"
#include "ZentuStringUtil.h"
