#pragma once

#include "editors/diagram/DiagramSizing.h"

#include <QDialog>

class QSlider;

namespace kestrum::diagram {

class DiagramPageDocument;

// Resizes a whole diagram live with four sliders: blocks, block texts, link texts and link
// widths (from the links' weights). The values are kept in `values` for the session.
class TRMSizingDlg : public QDialog
{
    Q_OBJECT
public:
    TRMSizingDlg(DiagramPageDocument& document, SizingValues& values, QWidget* parent = nullptr);

    // On activation the first three sliders show the kept values; the link slider keeps its
    // own position.
    void FormActivate();
    // Keeps the sliders' values; while shown, applies the one that moved.
    void ApplyChanges(QSlider* changed);
    int GetEdgeSize(double weight) const { return DiagramSizing::GetEdgeSize(m_values, weight); }
    void CloseBtnClick();

    QSlider* nodeSlider() const { return m_node; }
    QSlider* nodeTextSlider() const { return m_nodeText; }
    QSlider* linkTextSlider() const { return m_linkText; }
    QSlider* linkSlider() const { return m_link; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    QSlider* addSlider(const QString& caption, int min, int max, int start);

    DiagramPageDocument& m_document;
    SizingValues& m_values;
    QSlider* m_node = nullptr;
    QSlider* m_nodeText = nullptr;
    QSlider* m_linkText = nullptr;
    QSlider* m_link = nullptr;
};

} // namespace kestrum::diagram
