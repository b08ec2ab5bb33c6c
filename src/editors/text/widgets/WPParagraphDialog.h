#pragma once

#include <QDialog>
#include <QTextBlockFormat>

class QComboBox;
class QDoubleSpinBox;

namespace kestrum::text {

// Paragraph properties: alignment, indents (centimetres), spacing (points) and line spacing.
class WPParagraphDialog : public QDialog
{
    Q_OBJECT
public:
    explicit WPParagraphDialog(QWidget* parent = nullptr);

    void setFormat(const QTextBlockFormat& format);
    // The properties the dialog edits, to be merged into the selected paragraphs.
    QTextBlockFormat format() const;

private:
    void updateValueBox();

    QComboBox* m_alignment;
    QDoubleSpinBox* m_left;
    QDoubleSpinBox* m_right;
    QDoubleSpinBox* m_first;
    QDoubleSpinBox* m_before;
    QDoubleSpinBox* m_after;
    QComboBox* m_lineSpacing;
    QDoubleSpinBox* m_lineValue;
};

} // namespace kestrum::text
