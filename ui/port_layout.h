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
    /// The product type that the instrument reports.
    int product;
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

/// The layout of a product type, or null for a type that is unknown.
const port_layout_t *find_port_layout(int product);
