#pragma once

#include "editors/diagram/DiagramItems.h"

#include <QDialog>

#include <vector>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QTabWidget;

namespace kestrum::ui {
class ColourSelector;
}

namespace kestrum::diagram {

class DiagramPageDocument;

// The edit dialog of the selected blocks ("Nodes") and links ("Links"). Every change of a
// control is applied at once to the diagram; "Close" keeps what was applied (there is no undo).
class TRMEditBlockDlg : public QDialog
{
    Q_OBJECT
public:
    explicit TRMEditBlockDlg(DiagramPageDocument& document, QWidget* parent = nullptr);

    // Fills the controls from the selection (the editor's Edit1Click): the values of the last
    // selected block and link, texts only for a single selection, tabs for what is selected.
    void prepareFromSelection();

    // On activation: text box colours, and the links to edit: those selected now, which are
    // then unselected so that their own colours show while editing.
    void FormActivate();
    // Writes the controls into the selected blocks and the links to edit (only while shown).
    void ApplyChanges();
    // The nodes tab's "Font": the font dialog, then apply whatever it gave.
    void BtnFontClick();
    // The links tab's "Font": the font dialog from the sample's font; OK sets the sample.
    void Button1Click();
    // "Close": closes with an OK result.
    void SpeedButton2Click();

    const std::vector<int>& linksToEdit() const { return m_linksToEdit; }
    QTabWidget* tabs() const { return m_tabs; }
    QComboBox* shapeList() const { return m_shapeList; }
    QSpinBox* sizeSpin() const { return m_sizeSpin; }
    ui::ColourSelector* colourWell() const { return m_colourWell; }
    QLineEdit* blockText() const { return m_blockText; }
    QSpinBox* linkSizeSpin() const { return m_linkSizeSpin; }
    ui::ColourSelector* linkColourWell() const { return m_linkColourWell; }
    QComboBox* styleList() const { return m_styleList; }
    QLineEdit* linkText() const { return m_linkText; }
    const DiagramFont& nodeFont() const { return m_nodeFont; }
    const DiagramFont& linkFont() const { return m_linkFont; }

    // The shape list index that shows a block shape, and the shape an index applies.
    static int shapeIndexFor(quint8 shape);
    static quint8 shapeForIndex(int index);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* buildNodesTab();
    QWidget* buildLinksTab();
    void showLinkSample();
    void paintTextBoxes();

    DiagramPageDocument& m_document;
    QTabWidget* m_tabs = nullptr;
    QComboBox* m_shapeList = nullptr;
    QSpinBox* m_sizeSpin = nullptr;
    ui::ColourSelector* m_colourWell = nullptr;
    QLabel* m_nodeSample = nullptr;
    QLineEdit* m_blockText = nullptr;
    QSpinBox* m_linkSizeSpin = nullptr;
    ui::ColourSelector* m_linkColourWell = nullptr;
    QComboBox* m_styleList = nullptr;
    QLabel* m_linkSample = nullptr;
    QLineEdit* m_linkText = nullptr;
    DiagramFont m_nodeFont;
    DiagramFont m_linkFont;
    std::vector<int> m_linksToEdit;
    bool m_preparing = false;
};

} // namespace kestrum::diagram
