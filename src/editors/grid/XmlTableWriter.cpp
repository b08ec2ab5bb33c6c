#include "XmlTableWriter.h"

#include "editors/grid/GridDocument.h"

#include <QXmlStreamWriter>

namespace kestrum::grid {

namespace {

// XML 1.0 has no way to write the C0 control characters other than tab and line ends.
QString xmlText(const QString& text)
{
    QString out = text;
    out.removeIf([](QChar c) {
        const char16_t u = c.unicode();
        return (u < 0x20 && u != '\t' && u != '\n' && u != '\r') || u == 0xFFFE || u == 0xFFFF;
    });
    return out;
}

} // namespace

QString XmlTableWriter::xmlElementName(const QString& header)
{
    QString name = header;
    name.replace(QLatin1Char('#'), QLatin1String("no"));
    for (QChar& c : name) {
        const char16_t u = c.unicode();
        const bool keep = (u >= 'A' && u <= 'Z') || (u >= 'a' && u <= 'z') ||
                          (u >= '0' && u <= '9') || u == '-' || u == '.' || u == ':' || u == '_';
        if (!keep) {
            c = QLatin1Char('_');
        }
    }
    while (name.contains(QLatin1String("__"))) {
        name.replace(QLatin1String("__"), QLatin1String("_"));
    }
    if (name.isEmpty() || name.front().isDigit() || name.front() == QLatin1Char('-') ||
        name.front() == QLatin1Char('.')) {
        name.prepend(QLatin1Char('_'));
    }
    return name;
}

QByteArray XmlTableWriter::write(const GridDocument& grid)
{
    const std::vector<int> columns = grid.visibleColumns();
    std::vector<QString> names;
    names.reserve(columns.size());
    for (const int c : columns) {
        names.push_back(xmlElementName(grid.text(c, 0)));
    }
    QByteArray out;
    QXmlStreamWriter xml(&out);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("Table"));
    for (int r = 1; r < grid.rowCount(); ++r) {
        xml.writeStartElement(QStringLiteral("Row"));
        for (std::size_t i = 0; i < columns.size(); ++i) {
            xml.writeTextElement(names[i], xmlText(grid.text(columns[i], r)));
        }
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndDocument();
    return out;
}

} // namespace kestrum::grid
