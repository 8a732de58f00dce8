// SPDX-License-Identifier: MIT
#pragma once

#include "sim/visa/visa_types.h"

/// The ten VISA entry points of the library, with the signatures of VPP-4.3.2. Results are
/// VISA status codes; a null pointer where a result or text is needed gives
/// VI_ERROR_USER_BUF, a null text VI_ERROR_INV_EXPR or VI_ERROR_INV_RSRC_NAME. The count
/// pointers of viFindRsrc, viWrite and viRead and the find list pointer may be null.

#if defined(_WIN32) && defined(CORVANE_SIM_BUILD)
#define CORVANE_SIM_VISA_API extern "C" __declspec(dllexport)
#elif defined(_WIN32)
#define CORVANE_SIM_VISA_API extern "C" __declspec(dllimport)
#else
#define CORVANE_SIM_VISA_API extern "C" __attribute__((visibility("default")))
#endif

CORVANE_SIM_VISA_API ViStatus CORVANE_SIM_VISA_CALL viOpenDefaultRM(ViSession *vi);
CORVANE_SIM_VISA_API ViStatus CORVANE_SIM_VISA_CALL viSetAttribute(ViObject vi, ViAttr attrName,
                                                                   ViAttrState attrValue);
CORVANE_SIM_VISA_API ViStatus CORVANE_SIM_VISA_CALL viGetAttribute(ViObject vi, ViAttr attrName,
                                                                   void *attrValue);
CORVANE_SIM_VISA_API ViStatus CORVANE_SIM_VISA_CALL viClose(ViObject vi);
CORVANE_SIM_VISA_API ViStatus CORVANE_SIM_VISA_CALL viFindRsrc(ViSession sesn, const char *expr,
                                                               ViFindList *findList,
                                                               ViUInt32 *retCnt, char *desc);
CORVANE_SIM_VISA_API ViStatus CORVANE_SIM_VISA_CALL viFindNext(ViFindList findList, char *desc);
/// An instrument that is not there is reported at once, whatever the open time-out is.
CORVANE_SIM_VISA_API ViStatus CORVANE_SIM_VISA_CALL viOpen(ViSession sesn, const char *rsrcName,
                                                           ViAccessMode accessMode,
                                                           ViUInt32 openTimeout, ViSession *vi);
CORVANE_SIM_VISA_API ViStatus CORVANE_SIM_VISA_CALL viClear(ViSession vi);
CORVANE_SIM_VISA_API ViStatus CORVANE_SIM_VISA_CALL viWrite(ViSession vi, const ViUInt8 *buf,
                                                            ViUInt32 cnt, ViUInt32 *retCnt);
CORVANE_SIM_VISA_API ViStatus CORVANE_SIM_VISA_CALL viRead(ViSession vi, ViUInt8 *buf, ViUInt32 cnt,
                                                           ViUInt32 *retCnt);
