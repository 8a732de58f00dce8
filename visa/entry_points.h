// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

/// The VISA entry points of a library of ours, with the signatures of VPP-4.3.2. Results are
/// VISA status codes; a null pointer where a result or text is needed gives
/// VI_ERROR_USER_BUF, a null text VI_ERROR_INV_EXPR or VI_ERROR_INV_RSRC_NAME. Where the standard
/// has it so, pointers may be null: the counts of viFindRsrc, viWrite and viRead, the find list,
/// the texts of viParseRsrcEx, the keys of viLock, the results of viWaitOnEvent.

#if defined(_WIN32) && defined(CORVANE_VISA_BUILD)
#define CORVANE_VISA_API extern "C" __declspec(dllexport)
#elif defined(_WIN32)
#define CORVANE_VISA_API extern "C" __declspec(dllimport)
#else
#define CORVANE_VISA_API extern "C" __attribute__((visibility("default")))
#endif

#define CORVANE_ENTRY CORVANE_VISA_API ViStatus CORVANE_VISA_CALL

CORVANE_ENTRY viOpenDefaultRM(ViSession *vi);
CORVANE_ENTRY viSetAttribute(ViObject vi, ViAttr attrName, ViAttrState attrValue);
CORVANE_ENTRY viGetAttribute(ViObject vi, ViAttr attrName, void *attrValue);
CORVANE_ENTRY viClose(ViObject vi);
CORVANE_ENTRY viFindRsrc(ViSession sesn, const char *expr, ViFindList *findList, ViUInt32 *retCnt,
                         char *desc);
CORVANE_ENTRY viFindNext(ViFindList findList, char *desc);
CORVANE_ENTRY viParseRsrc(ViSession rmSesn, const char *rsrcName, ViUInt16 *intfType,
                          ViUInt16 *intfNum);
CORVANE_ENTRY viParseRsrcEx(ViSession rmSesn, const char *rsrcName, ViUInt16 *intfType,
                            ViUInt16 *intfNum, char *rsrcClass, char *expandedUnaliasedName,
                            char *aliasIfExists);
CORVANE_ENTRY viOpen(ViSession sesn, const char *rsrcName, ViAccessMode accessMode,
                     ViUInt32 openTimeout, ViSession *vi);
CORVANE_ENTRY viClear(ViSession vi);
CORVANE_ENTRY viWrite(ViSession vi, const ViUInt8 *buf, ViUInt32 cnt, ViUInt32 *retCnt);
CORVANE_ENTRY viRead(ViSession vi, ViUInt8 *buf, ViUInt32 cnt, ViUInt32 *retCnt);
CORVANE_ENTRY viReadSTB(ViSession vi, ViUInt16 *status);
CORVANE_ENTRY viAssertTrigger(ViSession vi, ViUInt16 protocol);
CORVANE_ENTRY viLock(ViSession vi, ViAccessMode lockType, ViUInt32 timeout,
                     const char *requestedKey, char *accessKey);
CORVANE_ENTRY viUnlock(ViSession vi);
CORVANE_ENTRY viStatusDesc(ViObject vi, ViStatus status, char *desc);
CORVANE_ENTRY viFlush(ViSession vi, ViUInt16 mask);
CORVANE_ENTRY viSetBuf(ViSession vi, ViUInt16 mask, ViUInt32 size);
CORVANE_ENTRY viEnableEvent(ViSession vi, ViEventType eventType, ViUInt16 mechanism,
                            ViUInt32 context);
CORVANE_ENTRY viDisableEvent(ViSession vi, ViEventType eventType, ViUInt16 mechanism);
CORVANE_ENTRY viDiscardEvents(ViSession vi, ViEventType eventType, ViUInt16 mechanism);
CORVANE_ENTRY viWaitOnEvent(ViSession vi, ViEventType inEventType, ViUInt32 timeout,
                            ViEventType *outEventType, ViEvent *outContext);
CORVANE_ENTRY viInstallHandler(ViSession vi, ViEventType eventType, ViHndlr handler,
                               ViAddr userHandle);
CORVANE_ENTRY viUninstallHandler(ViSession vi, ViEventType eventType, ViHndlr handler,
                                 ViAddr userHandle);

#undef CORVANE_ENTRY
