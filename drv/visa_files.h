// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

/// The name under which every vendor installs VISA on Windows.
constexpr const char *standard_visa_file = "visa32.dll";

/// The files that may be the VISA library, in the order in which to try them: names, which stand
/// for the loader's own choice, and full paths.
QStringList visa_files();
