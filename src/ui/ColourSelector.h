#pragma once

#include <QColor>
#include <QToolButton>

class QMenu;

namespace kestrum::ui {

// The colour button of the editors' toolbars: a click applies the colour shown, the arrow opens
// the standard palette and "More colours..." (the colour dialog, through dialogs()). The icon
// shows a glyph over a bar of the current colour.
class ColourSelector : public QToolButton
{
    Q_OBJECT
public:
    enum class Kind
    {
        Text,      // an "A" over the bar: font colour
        Background // a shaded page over the bar: cell or text background
    };

    ColourSelector(Kind kind, const QString& caption, QWidget* parent = nullptr);

    QColor colour() const { return m_colour; }
    // Shows `colour` without announcing it (the toolbar following the caret or current cell).
    void setColour(const QColor& colour);
    // What a user's choice does: shows the colour and announces it.
    void choose(const QColor& colour);
    QMenu* palettePopup() const { return m_menu; }

signals:
    void colourSelected(const QColor& colour);

private:
    void chooseMore();
    void updateIcon();

    Kind m_kind;
    QColor m_colour;
    QMenu* m_menu;
};

} // namespace kestrum::ui
