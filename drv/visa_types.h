// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// The few types, constants and calling convention of the VISA C interface that the link uses,
/// as the IVI Foundation's VPP-4.3 and VPP-4.3.2 define them. All are 32 bits wide, on 64-bit
/// systems too.

using ViUInt32 = std::uint32_t;
using ViStatus = std::int32_t;
using ViSession = std::uint32_t;
using ViFindList = std::uint32_t;
using ViAttr = std::uint32_t;
using ViAttrState = std::uint32_t;
using ViAccessMode = std::uint32_t;

#if defined(_WIN32) && !defined(_WIN64)
#define CORVANE_VI_FUNC __stdcall
#else
#define CORVANE_VI_FUNC
#endif

/// Success; warnings are positive and errors negative.
constexpr ViStatus vi_success = 0;
/// VI_ERROR_LIBRARY_NFOUND: a code library required by VISA could not be located or loaded.
constexpr ViStatus vi_error_library_nfound = static_cast<ViStatus>(0xBFFF009E);
/// VI_ATTR_TMO_VALUE: the session's I/O time-out in milliseconds.
constexpr ViAttr vi_attr_tmo_value = 0x3FFF001A;
/// VI_FIND_BUFLEN: the size in bytes of the buffer that a find fills with a resource string.
constexpr unsigned vi_find_buflen = 256;
/// VI_NO_LOCK: the access mode of a session that takes no lock.
constexpr ViAccessMode vi_no_lock = 0;
