// SPDX-License-Identifier: MIT
#pragma once

#include "drv/instrument_records.h"

#include <cstdint>

/// Which product identifiers the connected instrument accepts. There is one setting for the
/// process; change it only while no upgrade runs. At the start it accepts the identifier 0 alone.

/// True: accept the identifiers from the lowest to the highest. False: accept the exact one.
void set_range_mode(bool range);
void set_exact_id(std::int32_t id);
void set_min_id(std::int32_t id);
void set_max_id(std::int32_t id);

/// Sets all four as an instrument told them.
void set_accepted_ids(const upgrade_id_t &record);

/// True when the setting accepts packages with this product identifier; both bounds of a range
/// are part of it.
bool check_product_id(std::int32_t id);
