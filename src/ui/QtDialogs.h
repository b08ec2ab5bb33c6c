#pragma once

#include "ui/Dialogs.h"

namespace kestrum::ui {

// The real dialogs: Qt's message boxes and standard dialogs.
class QtDialogs : public Dialogs
{
public:
    bool askYesNo(QWidget* parent, const QString& title, const QString& text) override;
    void information(QWidget* parent, const QString& text) override;
    void warning(QWidget* parent, const QString& text) override;
    void notice(QWidget* parent, const QString& text, int milliseconds) override;
    std::optional<QString> getText(QWidget* parent, const QString& title, const QString& prompt,
                                   const QString& initial) override;
    std::optional<QColor> getColour(QWidget* parent, const QColor& initial,
                                    const QString& title) override;
    std::optional<QFont> getFont(QWidget* parent, const QFont& initial,
                                 const QString& title) override;
    std::optional<FileChoice> getOpenFileName(QWidget* parent, const FileRequest& request) override;
    std::optional<QStringList> getOpenFileNames(QWidget* parent,
                                                const FileRequest& request) override;
    std::optional<FileChoice> getSaveFileName(QWidget* parent, const FileRequest& request) override;
    bool print(QWidget* parent, QPrinter* printer) override;
    bool printSetup(QWidget* parent, QPrinter* printer) override;
    bool printPreview(QWidget* parent, QPrinter* printer,
                      const std::function<void(QPrinter*)>& paint) override;
    int exec(QDialog* dialog) override;
};

} // namespace kestrum::ui
