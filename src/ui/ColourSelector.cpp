#include "ColourSelector.h"

#include "common/Colour.h"
#include "ui/Dialogs.h"

#include <QGridLayout>
#include <QMenu>
#include <QPainter>
#include <QWidgetAction>

namespace kestrum::ui {

ColourSelector::ColourSelector(Kind kind, const QString& caption, QWidget* parent)
    : QToolButton(parent), m_kind(kind),
      m_colour(kind == Kind::Text ? QColor(Qt::black) : QColor(Qt::white)), m_menu(new QMenu(this))
{
    setToolTip(caption);
    setPopupMode(QToolButton::MenuButtonPopup);
    setMenu(m_menu);

    auto* grid = new QWidget(m_menu);
    auto* layout = new QGridLayout(grid);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(2);
    const auto& standard = common::standardPalette();
    for (int i = 0; i < int(standard.size()); ++i) {
        const QColor colour = common::toQColor(standard[std::size_t(i)]);
        auto* swatch = new QToolButton(grid);
        swatch->setObjectName(QStringLiteral("swatch%1").arg(i));
        swatch->setAutoRaise(true);
        swatch->setFixedSize(20, 20);
        QPixmap pixmap(14, 14);
        pixmap.fill(colour);
        {
            QPainter p(&pixmap);
            p.setPen(Qt::gray);
            p.drawRect(0, 0, 13, 13);
        }
        swatch->setIcon(QIcon(pixmap));
        swatch->setToolTip(common::colourToString(standard[std::size_t(i)]).mid(2));
        connect(swatch, &QToolButton::clicked, this, [this, colour] {
            m_menu->close();
            choose(colour);
        });
        layout->addWidget(swatch, i / 5, i % 5);
    }
    auto* action = new QWidgetAction(m_menu);
    action->setDefaultWidget(grid);
    m_menu->addAction(action);
    m_menu->addSeparator();
    m_menu->addAction(QStringLiteral("More colours..."), this, &ColourSelector::chooseMore);
    connect(this, &QToolButton::clicked, this, [this] { choose(m_colour); });
    updateIcon();
}

void ColourSelector::setColour(const QColor& colour)
{
    if (colour.isValid() && colour != m_colour) {
        m_colour = colour;
        updateIcon();
    }
}

void ColourSelector::choose(const QColor& colour)
{
    setColour(colour);
    emit colourSelected(colour);
}

void ColourSelector::chooseMore()
{
    if (const auto chosen = dialogs().getColour(this, m_colour, toolTip())) {
        choose(*chosen);
    }
}

void ColourSelector::updateIcon()
{
    QPixmap pixmap(20, 20);
    pixmap.fill(Qt::transparent);
    {
        QPainter p(&pixmap);
        if (m_kind == Kind::Text) {
            QFont f = font();
            f.setBold(true);
            f.setPixelSize(13);
            p.setFont(f);
            p.setPen(palette().color(QPalette::ButtonText));
            p.drawText(QRect(0, 0, 20, 15), Qt::AlignCenter, QStringLiteral("A"));
        } else {
            p.setPen(palette().color(QPalette::ButtonText));
            p.drawRect(4, 2, 11, 11);
            p.drawLine(6, 5, 13, 5);
            p.drawLine(6, 8, 13, 8);
        }
        p.fillRect(QRect(2, 15, 16, 4), m_colour);
        p.setPen(Qt::gray);
        p.drawRect(QRect(2, 15, 15, 3));
    }
    setIcon(QIcon(pixmap));
}

} // namespace kestrum::ui
