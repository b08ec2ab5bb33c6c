#include "ColourWell.h"

#include "ui/Dialogs.h"

#include <QPainter>
#include <QPixmap>

namespace kestrum::timeline {

ColourWell::ColourWell(QWidget* parent) : QToolButton(parent)
{
    setIconSize(QSize(40, 14));
    connect(this, &QToolButton::clicked, this, &ColourWell::pick);
    setColour(common::clBlack);
}

void ColourWell::setColour(common::TColor colour)
{
    m_colour = colour;
    QPixmap swatch(iconSize());
    swatch.fill(common::toQColor(colour).isValid() ? common::toQColor(colour) : QColor(Qt::white));
    QPainter p(&swatch);
    p.setPen(Qt::darkGray);
    p.drawRect(swatch.rect().adjusted(0, 0, -1, -1));
    p.end();
    setIcon(QIcon(swatch));
}

void ColourWell::pick()
{
    const auto chosen = ui::dialogs().getColour(this, common::toQColor(m_colour));
    if (chosen) {
        setColour(common::fromQColor(*chosen));
    }
}

} // namespace kestrum::timeline
