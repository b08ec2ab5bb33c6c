#pragma once

#include "common/Colour.h"

#include <QToolButton>

namespace kestrum::grid {

// A tool button that picks a colour: a menu of the standard colours and "More colours..."
// (the colour dialog, through app::dialogs()). Its icon shows the colour last set or chosen.
class ColourSelectorButton : public QToolButton
{
    Q_OBJECT
public:
    ColourSelectorButton(const QString& glyph, const QString& toolTip, QWidget* parent = nullptr);

    common::TColor colour() const { return m_colour; }
    // Shows `colour` without announcing it (the toolbar following the current cell).
    void setColour(common::TColor colour);
    // What a user's choice does: shows the colour and announces it.
    void choose(common::TColor colour);

signals:
    void colourSelected(common::TColor colour);

private:
    void updateIcon();

    QString m_glyph;
    common::TColor m_colour = common::clBlack;
};

} // namespace kestrum::grid
