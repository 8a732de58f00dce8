// SPDX-License-Identifier: MIT
#pragma once

class QFile;

/// Opens a regular file for reading. Throws std::exception, with a text for the user that says why,
/// when it cannot be read or is of another kind, which might keep its reader waiting.
void open_to_read(QFile &file);
