// SPDX-License-Identifier: MIT
#pragma once

/// The scope of an exchange with the instrument, which blocks the GUI thread.
///
/// While one exists the wait cursor is shown. When the outermost one ends, the input that came
/// meanwhile is discarded, for what it was aimed at may have changed; an exchange during which none
/// can have come discards none. End the scope before a message box is shown. Scopes may be inside
/// one another; GUI thread only.
class instrument_traffic_t
{
public:
    instrument_traffic_t();
    ~instrument_traffic_t();

    instrument_traffic_t(const instrument_traffic_t &) = delete;
    instrument_traffic_t &operator=(const instrument_traffic_t &) = delete;
};
