// SPDX-License-Identifier: MIT
#include "ui/port_layout.h"

namespace {

QStringList letters(const char *text)
{
    return QString::fromLatin1(text).split(QString(), Qt::SkipEmptyParts);
}

const QVector<port_block_t> one_block{{1, 0, 0}};
const QVector<port_block_t> two_blocks{{1, 0, 0}, {7, 0, 1}};
const QVector<port_block_t> four_blocks{{13, 0, 0}, {19, 0, 1}, {1, 1, 0}, {7, 1, 1}};

/// "A" and "B" reach the left column, "C" and "D" the right one.
QMap<QString, QVector<int>> split_reach(const QVector<int> &right, const QVector<int> &left)
{
    return {{QStringLiteral("A"), right},
            {QStringLiteral("B"), right},
            {QStringLiteral("C"), left},
            {QStringLiteral("D"), left}};
}

const QMap<QString, QVector<int>> full_reach;

const QMap<QString, QString> four_port_colors{
    {QStringLiteral("A"), QStringLiteral("blue")},
    {QStringLiteral("B"), QStringLiteral("greenyellow")},
    {QStringLiteral("C"), QStringLiteral("deepskyblue")},
    {QStringLiteral("D"), QStringLiteral("magenta")},
};
const QMap<QString, QString> two_port_colors{
    {QStringLiteral("A"), QStringLiteral("blue")},
    {QStringLiteral("B"), QStringLiteral("magenta")},
};

constexpr auto four = route_query_t::four_ports;
constexpr auto two = route_query_t::two_ports;

} // namespace

const port_layout_t port_layouts::tmx44{letters("ABCD"), four_blocks, split_reach({1, 3}, {0, 2}),
                                        letters("ABCD"), four,        four_port_colors};
const port_layout_t port_layouts::tmx42{letters("ABCD"), two_blocks, split_reach({1}, {0}),
                                        letters("ABCD"), four,       four_port_colors};
const port_layout_t port_layouts::tmx24{letters("AB"), four_blocks, full_reach,
                                        letters("AB"), two,         two_port_colors};
const port_layout_t port_layouts::tmx22{letters("AB"),   two_blocks, full_reach,
                                        letters("ABCD"), two,        four_port_colors};
const port_layout_t port_layouts::tmx21{letters("AB"),   one_block, full_reach,
                                        letters("ABCD"), two,       four_port_colors};
