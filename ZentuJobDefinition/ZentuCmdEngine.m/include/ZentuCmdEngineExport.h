#pragma once

// ZENTU_CMD_ENGINE_API marks what the ZentuCmdEngine library exports; everything else stays hidden.
#if defined(_WIN32)
#if defined(ZENTU_CMD_ENGINE_BUILDING)
#define ZENTU_CMD_ENGINE_API __declspec(dllexport)
#else
#define ZENTU_CMD_ENGINE_API __declspec(dllimport)
#endif
#else
#define ZENTU_CMD_ENGINE_API __attribute__((visibility("default")))
#endif
