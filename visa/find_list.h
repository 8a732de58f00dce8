// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

#include <cstddef>
#include <string>
#include <vector>

namespace visa {

/// Stores a text for a caller that has VI_FIND_BUFLEN bytes, cut where it does not fit; nothing for
/// a null pointer.
void store_text(char *target, const std::string &text);

/// The names that a search has found, and how far they have been handed out.
struct find_list_t
{
    ViSession manager = null_object;
    std::vector<std::string> names;
    std::size_t next = 0;

    /// Stores the next name, as viFindNext does.
    ViStatus hand_out(char *name);
};

} // namespace visa
