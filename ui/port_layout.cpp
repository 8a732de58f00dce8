// SPDX-License-Identifier: MIT
#include "ui/port_layout.h"

#include <algorithm>

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

/// Products 22 and 21 show two VNA ports, but a refresh asks for the routes and colours of four.
const QVector<port_layout_t> &port_layouts()
{
    constexpr auto four = route_query_t::four_ports;
    constexpr auto two = route_query_t::two_ports;
    static const QVector<port_layout_t> layouts{
        {44, letters("ABCD"), four_blocks, split_reach({1, 3}, {0, 2}), letters("ABCD"), four,
         four_port_colors},
        {42, letters("ABCD"), two_blocks, split_reach({1}, {0}), letters("ABCD"), four,
         four_port_colors},
        {24, letters("AB"), four_blocks, full_reach, letters("AB"), two, two_port_colors},
        {22, letters("AB"), two_blocks, full_reach, letters("ABCD"), two, four_port_colors},
        {21, letters("AB"), one_block, full_reach, letters("ABCD"), two, four_port_colors},
    };
    return layouts;
}

} // namespace

const port_layout_t *find_port_layout(int product)
{
    const QVector<port_layout_t> &layouts = port_layouts();
    const auto *const layout =
        std::find_if(layouts.begin(), layouts.end(), [product](const port_layout_t &candidate) {
            return candidate.product == product;
        });
    return layout != layouts.end() ? layout : nullptr;
}
