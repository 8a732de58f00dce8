// SPDX-License-Identifier: MIT
#pragma once

class QString;
class QWidget;

/// Shows a modal message box titled "Information" with `text` and the buttons Ok (the default) and
/// Close, and returns when the user has closed it. The title is translated in the context of the
/// parent's class.
void show_information(QWidget *parent, const QString &text);
