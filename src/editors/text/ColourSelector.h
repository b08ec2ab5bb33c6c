#pragma once

#include <QColor>
#include <QToolButton>

class QMenu;

namespace kestrum::text {

// A toolbar button that chooses a colour: a click applies the colour shown, the arrow opens a
// palette of the standard colours and "More colours..." (the colour dialog).
class ColourSelector : public QToolButton
{
    Q_OBJECT
public:
    enum class Kind
    {
        Text,
        Background
    };

    ColourSelector(Kind kind, const QString& caption, QWidget* parent = nullptr);

    QColor colour() const { return m_colour; }
    // Shows `colour` without choosing it.
    void setColour(const QColor& colour);
    QMenu* palettePopup() const { return m_menu; }

signals:
    void colourSelected(const QColor& colour);

private:
    void choose(const QColor& colour);
    void chooseMore();
    void updateIcon();

    Kind m_kind;
    QColor m_colour;
    QMenu* m_menu;
};

} // namespace kestrum::text
