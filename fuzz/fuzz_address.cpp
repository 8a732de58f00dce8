// SPDX-License-Identifier: MIT
// Puts arbitrary texts into the address editor. It takes exactly the dotted quads of numbers up to
// 255 and shows them as they are written; any other text changes nothing.

#include "ui/widget/q_ip_line_edit.h"

#include <QApplication>
#include <QStringList>

#include <algorithm>
#include <cstdint>

namespace {

QIPLineEdit *editor;

bool is_octet(const QString &part)
{
    const bool digits = std::all_of(part.begin(), part.end(), [](const QChar &character) {
        return character >= QLatin1Char('0') && character <= QLatin1Char('9');
    });
    return digits && part.size() >= 1 && part.size() <= 3 && part.toInt() <= 255;
}

bool is_address(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    return parts.size() == 4 && std::all_of(parts.begin(), parts.end(), is_octet);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Both live as long as the process, which libFuzzer ends without a word.
    new QApplication(*argc, *argv);
    editor = new QIPLineEdit;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString before = editor->text();
    const QString typed =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    editor->setText(typed);
    if (QIPLineEdit::is_valid_ip(typed) != is_address(typed))
        qFatal("an address is taken for none, or the other way round");
    if (editor->text() != (is_address(typed) ? typed : before))
        qFatal("the editor shows something else");
    return 0;
}
