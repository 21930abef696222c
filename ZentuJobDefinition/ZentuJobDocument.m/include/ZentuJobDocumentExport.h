#pragma once

// ZENTU_JOB_DOCUMENT_API marks what the ZentuJobDocument library exports; everything else stays
// hidden.
#if defined(_WIN32)
#if defined(ZENTU_JOB_DOCUMENT_BUILDING)
#define ZENTU_JOB_DOCUMENT_API __declspec(dllexport)
#else
#define ZENTU_JOB_DOCUMENT_API __declspec(dllimport)
#endif
#else
#define ZENTU_JOB_DOCUMENT_API __attribute__((visibility("default")))
#endif
