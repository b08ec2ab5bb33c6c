#pragma once

#include "editors/text/TextFinder.h"

#include <QDialog>

class QCheckBox;
class QLineEdit;
class QPushButton;

namespace kestrum::text {

// Find, or find and replace, in the page. It stays open while the user steps through the
// matches; its buttons ask the editor to act.
class WPFindDialog : public QDialog
{
    Q_OBJECT
public:
    enum class Mode
    {
        Find,
        Replace
    };

    explicit WPFindDialog(Mode mode, QWidget* parent = nullptr);

    QString findText() const;
    QString replaceText() const;
    void setFindText(const QString& text);
    void setReplaceText(const QString& text);
    FindOptions options() const;

signals:
    void findNext();
    void replaceOne();
    void replaceAll();

private:
    QLineEdit* m_find;
    QLineEdit* m_replace;
    QCheckBox* m_case;
    QCheckBox* m_words;
    QCheckBox* m_backwards;
};

} // namespace kestrum::text
