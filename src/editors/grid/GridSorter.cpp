#include "GridSorter.h"

#include "editors/grid/GridDocument.h"

#include <QCollator>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kestrum::grid {

std::optional<double> GridSorter::toNumber(const QString& text)
{
    QString t = text.trimmed();
    if (t.endsWith(QLatin1Char('%'))) {
        t.chop(1);
        t = t.trimmed();
    }
    if (t.isEmpty()) {
        return std::nullopt;
    }
    bool ok = false;
    double v = QLocale::system().toDouble(t, &ok);
    if (!ok) {
        v = QLocale::c().toDouble(t, &ok);
    }
    if (!ok || !std::isfinite(v)) {
        return std::nullopt;
    }
    return v;
}

std::optional<QDateTime> GridSorter::toDate(const QString& text)
{
    const QString t = text.trimmed();
    if (t.size() < 6 || !t.front().isDigit()) {
        return std::nullopt;
    }
    QDateTime dt = QDateTime::fromString(t, Qt::ISODate);
    if (dt.isValid()) {
        return dt;
    }
    const QLocale locale = QLocale::system();
    const QString formats[] = {
        locale.dateFormat(QLocale::ShortFormat),
        locale.dateTimeFormat(QLocale::ShortFormat),
        QStringLiteral("dd/MM/yyyy"),
        QStringLiteral("d/M/yyyy"),
        QStringLiteral("dd/MM/yyyy hh:mm"),
        QStringLiteral("dd.MM.yyyy"),
        QStringLiteral("d.M.yyyy"),
        QStringLiteral("dd-MM-yyyy"),
        QStringLiteral("yyyy/MM/dd"),
    };
    for (const QString& format : formats) {
        dt = locale.toDateTime(t, format);
        if (dt.isValid()) {
            return dt;
        }
        const QDate d = locale.toDate(t, format);
        if (d.isValid()) {
            return d.startOfDay();
        }
    }
    return std::nullopt;
}

GridSorter::Kind GridSorter::detect(const GridDocument& grid, int col)
{
    bool numbers = true;
    bool dates = true;
    bool any = false;
    for (int r = grid.fixedRows(); r < grid.rowCount() && (numbers || dates); ++r) {
        const QString& t = grid.text(col, r);
        if (t.trimmed().isEmpty()) {
            continue;
        }
        any = true;
        if (numbers && !toNumber(t)) {
            numbers = false;
        }
        if (!numbers && dates && !toDate(t)) {
            dates = false;
        }
    }
    if (!any || numbers) {
        return any ? Kind::Number : Kind::Text;
    }
    return dates ? Kind::Date : Kind::Text;
}

void GridSorter::sort(GridDocument* grid, int col, bool ascending)
{
    if (col < 0 || col >= grid->columnCount()) {
        return;
    }
    const int first = grid->fixedRows();
    const int count = grid->rowCount() - first;
    if (count < 2) {
        return;
    }
    const Kind kind = detect(*grid, col);
    std::vector<int> order(static_cast<std::size_t>(count));
    std::iota(order.begin(), order.end(), first);

    // Rows with an empty cell go last; the others are ordered by their key.
    auto emptyAt = [&](int row) { return grid->text(col, row).trimmed().isEmpty(); };
    const auto split =
        std::stable_partition(order.begin(), order.end(), [&](int row) { return !emptyAt(row); });

    if (kind == Kind::Number || kind == Kind::Date) {
        std::vector<double> keys(std::size_t(grid->rowCount()), 0.0);
        for (auto it = order.begin(); it != split; ++it) {
            const QString& t = grid->text(col, *it);
            keys[std::size_t(*it)] = kind == Kind::Number ? toNumber(t).value_or(0.0)
                                                          : double(toDate(t)->toMSecsSinceEpoch());
        }
        std::stable_sort(order.begin(), split, [&](int a, int b) {
            return ascending ? keys[std::size_t(a)] < keys[std::size_t(b)]
                             : keys[std::size_t(b)] < keys[std::size_t(a)];
        });
    } else {
        // The C locale has no collation of its own (plain code points): take English rules.
        const QLocale system = QLocale::system();
        QCollator collator(system.language() == QLocale::C
                               ? QLocale(QLocale::English, QLocale::UnitedStates)
                               : system);
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        collator.setNumericMode(true);
        std::vector<QCollatorSortKey> keys;
        keys.reserve(std::size_t(count));
        std::vector<int> keyOf(std::size_t(grid->rowCount()), -1);
        for (auto it = order.begin(); it != split; ++it) {
            keyOf[std::size_t(*it)] = int(keys.size());
            keys.push_back(collator.sortKey(grid->text(col, *it)));
        }
        std::stable_sort(order.begin(), split, [&](int a, int b) {
            const int c = keys[std::size_t(keyOf[std::size_t(a)])].compare(
                keys[std::size_t(keyOf[std::size_t(b)])]);
            return ascending ? c < 0 : c > 0;
        });
    }
    grid->reorderRows(first, order);
}

} // namespace kestrum::grid
