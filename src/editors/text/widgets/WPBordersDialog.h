#pragma once

#include <QColor>
#include <QDialog>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QPushButton;

namespace kestrum::text {

// The border of the selected paragraphs: which sides, line style, width and distance from the
// text (points), colour.
class WPBordersDialog : public QDialog
{
    Q_OBJECT
public:
    struct Border
    {
        int sides = 0;   // BorderSide bits
        int width = 15;  // twips
        int spacing = 0; // twips
        int style = 3;   // QTextFrameFormat::BorderStyle_Solid
        QColor colour;   // invalid: the text colour
    };

    explicit WPBordersDialog(QWidget* parent = nullptr);

    void setBorder(const Border& border);
    Border border() const;

private:
    void chooseColour();
    void showColour();

    QCheckBox* m_top;
    QCheckBox* m_bottom;
    QCheckBox* m_left;
    QCheckBox* m_right;
    QComboBox* m_style;
    QDoubleSpinBox* m_width;
    QDoubleSpinBox* m_spacing;
    QPushButton* m_colourButton;
    QColor m_colour;
};

} // namespace kestrum::text
