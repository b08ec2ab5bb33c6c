#include "RtfTableWriter.h"

#include "editors/text/ColourTable.h"
#include "editors/text/TextProperties.h"

#include <QTextTable>

#include <algorithm>
#include <cmath>

namespace kestrum::text {

namespace {

int twips(qreal pixels)
{
    return pixelsToTwips(pixels);
}

} // namespace

RtfTableWriter::RtfTableWriter(common::RtfEmitter& rtf, ColourTable& colours,
                               const PageLayout& layout)
    : m_rtf(rtf), m_colours(colours), m_layout(layout)
{}

const char* RtfTableWriter::borderStyleWord(int style)
{
    switch (style) {
    case QTextFrameFormat::BorderStyle_Dotted:
        return "brdrdot";
    case QTextFrameFormat::BorderStyle_Dashed:
    case QTextFrameFormat::BorderStyle_DotDash:
    case QTextFrameFormat::BorderStyle_DotDotDash:
        return "brdrdash";
    case QTextFrameFormat::BorderStyle_Double:
        return "brdrdb";
    default:
        return "brdrs";
    }
}

int RtfTableWriter::colourNumber(const QColor& colour)
{
    const int number = m_colours.enter(colour);
    return number < 0 ? 0 : number;
}

std::vector<int> RtfTableWriter::columnWidths(const QTextTable* table) const
{
    const QTextTableFormat format = table->format();
    const int columns = table->columns();
    const QList<QTextLength> constraints = format.columnWidthConstraints();
    const int available = std::max(1440, m_layout.textWidth() - twips(format.leftMargin()));
    std::vector<int> widths(std::size_t(columns), 0);
    int fixed = 0;
    int variable = 0;
    for (int c = 0; c < columns; ++c) {
        const QTextLength length = c < constraints.size() ? constraints[c] : QTextLength();
        if (length.type() == QTextLength::FixedLength) {
            widths[std::size_t(c)] = std::max(60, twips(length.rawValue()));
        } else if (length.type() == QTextLength::PercentageLength) {
            widths[std::size_t(c)] = std::max(60, int(available * length.rawValue() / 100.0));
        } else {
            ++variable;
            continue;
        }
        fixed += widths[std::size_t(c)];
    }
    if (variable > 0) {
        const int share = std::max(600, (available - fixed) / variable);
        for (int& w : widths) {
            if (w == 0) {
                w = share;
            }
        }
    }

    return widths;
}

void RtfTableWriter::writePreferredWidth(const QTextLength& length, int twipsWidth)
{
    switch (length.type()) {
    case QTextLength::PercentageLength:
        m_rtf.word("clftsWidth", 2);
        m_rtf.word("clwWidth", std::clamp(int(std::lround(length.rawValue() * 50)), 1, 5000));
        break;
    case QTextLength::FixedLength:
        m_rtf.word("clftsWidth", 3);
        m_rtf.word("clwWidth", twipsWidth);
        break;
    default:
        m_rtf.word("clftsWidth", 1);
        break;
    }
}

void RtfTableWriter::writeRowDefinition(const QTextTable* table, int r,
                                        const std::vector<int>& widths)
{
    const QTextTableFormat format = table->format();
    const int columns = table->columns();
    const QList<QTextLength> constraints = format.columnWidthConstraints();
    const int gap = std::clamp(twips(format.cellPadding()), 0, 1440);
    const int left = std::clamp(twips(format.leftMargin()), 0, 31680);
    const bool tableBorder =
        format.border() > 0 && format.borderStyle() != QTextFrameFormat::BorderStyle_None;
    const int tableBorderWidth = std::clamp(twips(format.border()), 1, 1440);
    const int tableBorderColour = format.hasProperty(QTextFormat::FrameBorderBrush)
                                      ? colourNumber(format.borderBrush().color())
                                      : 0;

    m_rtf.raw("\\trowd");
    m_rtf.word("trgaph", gap);
    m_rtf.word("trleft", left);
    if (format.alignment() & Qt::AlignHCenter) {
        m_rtf.word("trqc");
    } else if (format.alignment() & Qt::AlignRight) {
        m_rtf.word("trqr");
    }
    if (r < format.headerRowCount()) {
        m_rtf.word("trhdr");
    }
    if (tableBorder) {
        // The table's border, outside and between the cells; the cells below name it too,
        // for readers that draw cell borders only.
        for (const char* name :
             {"trbrdrt", "trbrdrl", "trbrdrb", "trbrdrr", "trbrdrh", "trbrdrv"}) {
            m_rtf.word(name);
            m_rtf.word(borderStyleWord(format.borderStyle()));
            m_rtf.word("brdrw", tableBorderWidth);
            if (tableBorderColour > 0) {
                m_rtf.word("brdrcf", tableBorderColour);
            }
        }
    }
    int x = left;
    for (int c = 0; c < columns;) {
        const QTextTableCell cell = table->cellAt(r, c);
        const int span = std::max(1, cell.columnSpan());
        if (cell.rowSpan() > 1) {
            m_rtf.word(cell.row() == r ? "clvmgf" : "clvmrg");
        }
        const QTextTableCellFormat cf = cell.format().toTableCellFormat();
        if (cf.verticalAlignment() == QTextCharFormat::AlignMiddle) {
            m_rtf.word("clvertalc");
        } else if (cf.verticalAlignment() == QTextCharFormat::AlignBottom) {
            m_rtf.word("clvertalb");
        }
        struct Side
        {
            const char* name;
            int width;
            int style;
            int brush;
        };
        const Side sides[] = {
            {"clbrdrt", QTextFormat::TableCellTopBorder, QTextFormat::TableCellTopBorderStyle,
             QTextFormat::TableCellTopBorderBrush},
            {"clbrdrl", QTextFormat::TableCellLeftBorder, QTextFormat::TableCellLeftBorderStyle,
             QTextFormat::TableCellLeftBorderBrush},
            {"clbrdrb", QTextFormat::TableCellBottomBorder, QTextFormat::TableCellBottomBorderStyle,
             QTextFormat::TableCellBottomBorderBrush},
            {"clbrdrr", QTextFormat::TableCellRightBorder, QTextFormat::TableCellRightBorderStyle,
             QTextFormat::TableCellRightBorderBrush},
        };
        for (const Side& side : sides) {
            int width = 0;
            int style = QTextFrameFormat::BorderStyle_Solid;
            int colour = tableBorderColour;
            if (cf.hasProperty(side.width)) {
                width = cf.doubleProperty(side.width) > 0
                            ? std::clamp(twips(cf.doubleProperty(side.width)), 1, 1440)
                            : 0;
                if (cf.hasProperty(side.style)) {
                    style = cf.intProperty(side.style);
                }
                if (cf.hasProperty(side.brush)) {
                    colour = colourNumber(cf.brushProperty(side.brush).color());
                }
            } else if (tableBorder) {
                width = tableBorderWidth;
                style = format.borderStyle();
            }
            if (width <= 0 || style == QTextFrameFormat::BorderStyle_None) {
                if (tableBorder) {
                    // Switched off where the table's border would show.
                    m_rtf.word(side.name);
                    m_rtf.word("brdrnone");
                }
                continue;
            }
            m_rtf.word(side.name);
            m_rtf.word(borderStyleWord(style));
            m_rtf.word("brdrw", width);
            if (colour > 0) {
                m_rtf.word("brdrcf", colour);
            }
        }
        if (cf.hasProperty(QTextFormat::BackgroundBrush) &&
            cf.background().style() != Qt::NoBrush) {
            m_rtf.word("clcbpat", colourNumber(cf.background().color()));
        }
        if (span == 1) {
            writePreferredWidth(c < constraints.size() ? constraints[c] : QTextLength(),
                                widths[std::size_t(c)]);
        }
        for (int k = 0; k < span && c + k < columns; ++k) {
            x += widths[std::size_t(c + k)];
        }
        m_rtf.word("cellx", x);
        c += span;
    }
}

} // namespace kestrum::text
