#include "ColourSelectorButton.h"

#include "app/Dialogs.h"
#include "editors/grid/GridIcons.h"

#include <QMenu>
#include <QPainter>
#include <QWidgetAction>

#include <array>

namespace kestrum::grid {

namespace {

constexpr std::array<common::TColor, 16> kStandard{
    common::clBlack,  common::clMaroon,  common::clGreen, common::clOlive,
    common::clNavy,   common::clPurple,  common::clTeal,  common::clGray,
    common::clSilver, common::clRed,     common::clLime,  common::clYellow,
    common::clBlue,   common::clFuchsia, common::clAqua,  common::clWhite,
};

QIcon swatch(common::TColor colour)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    const QColor c = common::toQColor(colour);
    p.fillRect(QRect(1, 1, 14, 14), c.isValid() ? c : QColor(Qt::white));
    p.setPen(QColor(0x80, 0x80, 0x80));
    p.drawRect(QRect(1, 1, 13, 13));
    return QIcon(pixmap);
}

} // namespace

ColourSelectorButton::ColourSelectorButton(const QString& glyph, const QString& toolTip,
                                           QWidget* parent)
    : QToolButton(parent), m_glyph(glyph)
{
    setToolTip(toolTip);
    setPopupMode(QToolButton::InstantPopup);
    auto* menu = new QMenu(this);
    for (const common::TColor c : kStandard) {
        QAction* action = menu->addAction(swatch(c), common::colourToString(c).mid(2));
        connect(action, &QAction::triggered, this, [this, c] { choose(c); });
    }
    menu->addSeparator();
    QAction* more = menu->addAction(QStringLiteral("More colours..."));
    connect(more, &QAction::triggered, this, [this] {
        const std::optional<QColor> picked =
            app::dialogs().getColour(this, common::toQColor(m_colour), this->toolTip());
        if (picked) {
            choose(common::fromQColor(*picked));
        }
    });
    setMenu(menu);
    updateIcon();
}

void ColourSelectorButton::setColour(common::TColor colour)
{
    if (colour == m_colour) {
        return;
    }
    m_colour = colour;
    updateIcon();
}

void ColourSelectorButton::choose(common::TColor colour)
{
    m_colour = colour;
    updateIcon();
    emit colourSelected(colour);
}

void ColourSelectorButton::updateIcon()
{
    setIcon(GridIcons::colourGlyph(m_glyph, common::toQColor(m_colour)));
}

} // namespace kestrum::grid
