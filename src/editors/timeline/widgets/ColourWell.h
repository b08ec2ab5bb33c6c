#pragma once

#include "common/Colour.h"

#include <QToolButton>

namespace kestrum::timeline {

// A colour well of the options dialog: shows a colour; a click opens the colour dialog.
class ColourWell : public QToolButton
{
    Q_OBJECT
public:
    explicit ColourWell(QWidget* parent = nullptr);

    common::TColor colour() const { return m_colour; }
    void setColour(common::TColor colour);

private:
    void pick();

    common::TColor m_colour = common::clBlack;
};

} // namespace kestrum::timeline
