#pragma once

#include "editors/text/PageLayout.h"

#include <QDialog>

class QComboBox;
class QDoubleSpinBox;

namespace kestrum::text {

// Page properties: paper size (named sizes or custom), orientation and margins, in centimetres.
class WPPageSetupDialog : public QDialog
{
    Q_OBJECT
public:
    explicit WPPageSetupDialog(QWidget* parent = nullptr);

    void setPageLayout(const PageLayout& layout);
    PageLayout pageLayout() const;

private:
    void paperChosen();
    void orientationChosen();

    QComboBox* m_paper;
    QComboBox* m_orientation;
    QDoubleSpinBox* m_width;
    QDoubleSpinBox* m_height;
    QDoubleSpinBox* m_top;
    QDoubleSpinBox* m_bottom;
    QDoubleSpinBox* m_left;
    QDoubleSpinBox* m_right;
    bool m_updating = false;
};

} // namespace kestrum::text
