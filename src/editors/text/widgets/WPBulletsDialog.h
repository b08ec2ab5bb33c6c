#pragma once

#include <QDialog>
#include <QTextListFormat>

#include <optional>

class QComboBox;
class QLineEdit;
class QSpinBox;

namespace kestrum::text {

// Bullets and numbering of the selected paragraphs: the marker, the level and, for numbers,
// the text before and after them. "None" takes the paragraphs out of their list.
class WPBulletsDialog : public QDialog
{
    Q_OBJECT
public:
    explicit WPBulletsDialog(QWidget* parent = nullptr);

    void setListFormat(const std::optional<QTextListFormat>& format);
    std::optional<QTextListFormat> listFormat() const;

private:
    void updateNumbering();

    QComboBox* m_style;
    QSpinBox* m_level;
    QLineEdit* m_prefix;
    QLineEdit* m_suffix;
};

} // namespace kestrum::text
