#pragma once

#include "common/Colour.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QTabWidget;

namespace kestrum::wordcloud {
class TprWordCloud;
}

namespace kestrum::wordcloud_page {

// "Tag Cloud Options": the look of the page's cloud on three tabs ("Text Color", "Text Font",
// "Shape"). Every control acts at once on the cloud; colour changes only repaint (colours are
// given at paint time), shape, start position and font changes ask for a new layout.
class TRMTagOptionsDlg : public QDialog
{
    Q_OBJECT
public:
    // Gradient schemes of the "ColorScheme" list, in list order.
    enum Scheme
    {
        Multicolor = 0,
        Warm = 1,
        Cool = 2,
        GrayScale = 3,
        Custom = 4
    };
    struct SchemeColours
    {
        common::TColor start;
        common::TColor middle;
        common::TColor end;
        bool isMiddle;
    };
    static SchemeColours schemeColours(Scheme scheme);
    // The font's label: its name, then " Bold" and/or " Italic" as its style has them.
    static QString fontLabel(const QString& name, qint32 style);

    TRMTagOptionsDlg(wordcloud::TprWordCloud& cloud, QWidget* parent = nullptr);

    // ---- handlers (none acts while the controls are being loaded)
    void FormActivate();
    void ColorPaletteChange();
    void isColorEachClick();
    void ColorSchemeChange();
    void ColorChange();
    void isGradientClick();
    void ChangeFontClick();
    void UpdateWordCloud();
    void isShadowClick();

    // A well's colour as the dialog holds it (clNone for an empty well).
    common::TColor wellColour(int well) const { return m_wells[well]; }
    // Sets a well as the colour dialog would, then ColorChange.
    void chooseWellColour(int well, common::TColor colour);

    QTabWidget* tabs() const { return m_tabs; }
    QRadioButton* isColorEach() const { return m_isColorEach; }
    QRadioButton* isGradient() const { return m_isGradient; }
    QComboBox* colorPalette() const { return m_colorPalette; }
    QComboBox* colorScheme() const { return m_colorScheme; }
    QCheckBox* isMiddle() const { return m_isMiddle; }
    QPushButton* well(int index) const { return m_wellButtons[index]; }
    QLabel* fontName() const { return m_fontLabel; }
    QCheckBox* isShadow() const { return m_isShadow; }
    QRadioButton* isRectangular() const { return m_isRectangular; }
    QRadioButton* isEllipse() const { return m_isEllipse; }
    QRadioButton* isFromCenter() const { return m_isFromCenter; }
    QRadioButton* isRandom() const { return m_isRandom; }

    enum Well
    {
        StartWell = 0,
        MiddleWell = 1,
        EndWell = 2
    };

signals:
    void repaintRequested();
    // The report is to be written back.
    void modified();
    // The cloud's words are to be laid out again.
    void layoutRequested();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* buildColourTab();
    QWidget* buildFontTab();
    QWidget* buildShapeTab();
    void setWell(int well, common::TColor colour);
    void pickWell(int well);

    wordcloud::TprWordCloud& m_cloud;
    bool m_loading = false;
    common::TColor m_wells[3] = {common::clNone, common::clNone, common::clNone};

    QTabWidget* m_tabs = nullptr;
    QRadioButton* m_isColorEach = nullptr;
    QRadioButton* m_isGradient = nullptr;
    QComboBox* m_colorPalette = nullptr;
    QComboBox* m_colorScheme = nullptr;
    QCheckBox* m_isMiddle = nullptr;
    QPushButton* m_wellButtons[3] = {nullptr, nullptr, nullptr};
    QLabel* m_fontLabel = nullptr;
    QPushButton* m_changeFont = nullptr;
    QCheckBox* m_isShadow = nullptr;
    QLabel* m_shadowSizeLabel = nullptr;
    QSpinBox* m_shadowSize = nullptr;
    QRadioButton* m_isRectangular = nullptr;
    QRadioButton* m_isEllipse = nullptr;
    QRadioButton* m_isFromCenter = nullptr;
    QRadioButton* m_isRandom = nullptr;
};

} // namespace kestrum::wordcloud_page
