#pragma once

#include <QDialog>

class QLineEdit;
class QRadioButton;

namespace kestrum::app {

// "New Item": a document or a folder, under or after the current item, and its title.
class TRMNewNoteDlg : public QDialog
{
    Q_OBJECT
public:
    // `rootSelected`: the project node is selected, so nothing can go after it.
    explicit TRMNewNoteDlg(bool rootSelected, QWidget* parent = nullptr);

    bool folder() const;
    bool after() const;
    QString title() const;

    // The controls, for tests that answer the dialog as a user would.
    QRadioButton* documentButton() const { return m_document; }
    QRadioButton* folderButton() const { return m_folder; }
    QRadioButton* underButton() const { return m_under; }
    QRadioButton* afterButton() const { return m_after; }
    QLineEdit* titleEdit() const { return m_title; }

private:
    QRadioButton* m_document = nullptr;
    QRadioButton* m_folder = nullptr;
    QRadioButton* m_under = nullptr;
    QRadioButton* m_after = nullptr;
    QLineEdit* m_title = nullptr;
};

} // namespace kestrum::app
