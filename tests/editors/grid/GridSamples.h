#pragma once

#include "editors/grid/GridDocument.h"

#include <QString>

namespace kestrum::grid::test {

// A small frequency table with every kind of cell the exports must carry: a header row, a
// fixed first column, numbers, percentages, quotes, delimiters, line breaks, non-Latin text
// and formatted cells.
inline GridDocument sampleGrid()
{
    GridDocument g;
    g.setSize(5, 6);
    g.setFixedRows(1);
    g.setFixedColumns(1);
    const QString rows[6][5] = {
        {QStringLiteral("Code"), QStringLiteral("Group A"), QStringLiteral("Group B"),
         QStringLiteral("Age (#)"), QStringLiteral("Share")},
        {QStringLiteral("Isolation"), QStringLiteral("14"), QStringLiteral("9"),
         QStringLiteral("34"), QStringLiteral("45.2%")},
        {QStringLiteral("Trust, \"earned\""), QStringLiteral("7"), QStringLiteral("12"),
         QStringLiteral("41"), QStringLiteral("12.50")},
        {QStringLiteral("Line\nbreak"), QStringLiteral("0"), QStringLiteral("3"),
         QStringLiteral("29"), QStringLiteral("-3.5")},
        {QStringLiteral("Zoom fatigue – Łódź"), QStringLiteral("007"), QStringLiteral(""),
         QStringLiteral("52"), QStringLiteral("n/a")},
        {QStringLiteral("Total"), QStringLiteral("28"), QStringLiteral("24"), QStringLiteral(""),
         QStringLiteral("100%")},
    };
    for (int r = 0; r < 6; ++r) {
        for (int c = 0; c < 5; ++c) {
            g.setText(c, r, rows[r][c]);
        }
    }
    GridCellFormat header;
    header.fontStyle = FontStyle::Bold;
    header.background = common::clSilver;
    header.alignment = CellAlignment::Centre;
    for (int c = 0; c < 5; ++c) {
        g.setFormat(c, 0, header);
    }
    GridCellFormat red;
    red.fontColour = common::clRed;
    red.alignment = CellAlignment::Right;
    red.fontStyle = FontStyle::Italic | FontStyle::Underline;
    g.setFormat(1, 1, red);
    GridCellFormat custom;
    custom.fontName = QStringLiteral("Courier New");
    custom.fontSize = 12;
    custom.background = common::rgbColour(0x12, 0x34, 0x56);
    custom.fontColour = common::rgbColour(0xFE, 0xDC, 0xBA);
    g.setFormat(2, 2, custom);
    g.setColumnWidth(0, 140);
    g.setRowHeight(3, 40);
    return g;
}

} // namespace kestrum::grid::test
