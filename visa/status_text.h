// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

#include <string_view>

namespace visa {

/// The description of a status as viStatusDesc gives it; empty for a status that no library of ours
/// returns.
std::string_view status_text(ViStatus status);

} // namespace visa
