// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

/// Six test ports in a row: the number of the first, and the block's place among the blocks.
struct port_block_t
{
    int first_port;
    int row;
    int column;
};

/// How a product reports its routes.
enum class route_query_t { four_ports, two_ports };

/// What distinguishes one product's front panel from another's. The panel's code knows no product.
struct port_layout_t
{
    /// The VNA ports that have a button.
    QStringList vna_ports;
    QVector<port_block_t> blocks;
    /// By picked VNA port, the indexes of the blocks that it cannot reach.
    QMap<QString, QVector<int>> unreachable_blocks;
    /// The VNA ports whose routes a refresh asks for, with a button or without.
    QStringList routed_ports;
    route_query_t route_query;
    /// The colours that VNA ports have until the instrument reports theirs, as CSS names.
    QMap<QString, QString> default_colors;
};

/// Test ports in a block.
constexpr int ports_per_block = 6;

/// The layouts, each named after its product.
namespace port_layouts {
extern const port_layout_t tmx44;
extern const port_layout_t tmx42;
extern const port_layout_t tmx24;
/// Products 22 and 21 show two VNA ports, but a refresh asks for the routes and colours of four.
extern const port_layout_t tmx22;
extern const port_layout_t tmx21;
} // namespace port_layouts
