#pragma once

#include "editors/diagram/DiagramBlockStyles.h"

#include <QDialog>

#include <array>

class QComboBox;
class QLabel;
class QSpinBox;

namespace kestrum::ui {
class ColourSelector;
}

namespace kestrum::diagram {

class DiagramPageDocument;

// Styles the target, level-1 and level-2 blocks and every link of a diagram at once, and keeps
// the styles in a settings file.
class TRMEditBlocksDlg : public QDialog
{
    Q_OBJECT
public:
    TRMEditBlocksDlg(DiagramPageDocument& document, QWidget* parent = nullptr);

    // Which blocks each group styles (read only).
    void setGroups(BlockGroups groups) { m_groups = std::move(groups); }
    const BlockGroups& groups() const { return m_groups; }

    // The styles as the controls show them.
    DiagramBlockStyles styles() const;
    void setStyles(const DiagramBlockStyles& styles);

    void SaveSettings(const QString& fileName);
    void ReadSettings(const QString& fileName);
    // Styles the groups' blocks and every link (only while shown).
    void ApplyChanges();
    void btnApplyClick() { ApplyChanges(); }
    void btnCancelClick();
    // The font buttons of the targets, level 1, level 2 and the links tab.
    void Button1Click() { groupFontClick(0); }
    void Button2Click() { groupFontClick(1); }
    void Button3Click() { groupFontClick(2); }
    void Button4Click();

    struct GroupControls
    {
        ui::ColourSelector* colour = nullptr;
        QComboBox* shape = nullptr;
        QSpinBox* size = nullptr;
    };
    const GroupControls& groupControls(int group) const { return m_controls[std::size_t(group)]; }
    QComboBox* linkStyleList() const { return m_linkStyle; }
    QSpinBox* linkSizeSpin() const { return m_linkSize; }

private:
    QWidget* buildBlocksTab();
    QWidget* buildLinksTab();
    void groupFontClick(int group);

    DiagramPageDocument& m_document;
    BlockGroups m_groups;
    std::array<GroupControls, 3> m_controls;
    std::array<DiagramFont, 3> m_groupFonts;
    ui::ColourSelector* m_linkColour = nullptr;
    QComboBox* m_linkStyle = nullptr;
    QSpinBox* m_linkSize = nullptr;
    ui::ColourSelector* m_linkSizeColour = nullptr;
    QLabel* m_linkSample = nullptr;
    DiagramFont m_linkFont;
};

} // namespace kestrum::diagram
