#include "QtDialogs.h"

#include <QColorDialog>
#include <QDateTime>
#include <QFileDialog>
#include <QFontDialog>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QScreen>
#include <QTimer>
#include <QTreeView>

namespace kestrum::ui {

namespace {

constexpr int kTextBoxCharacters = 80;
constexpr QSize kFileDialogSize(960, 600);

// Runs a file dialog and reads back the file and the 1-based filter the user chose.
std::optional<Dialogs::FileChoice> runFileDialog(QFileDialog& dialog,
                                                 const Dialogs::FileRequest& request)
{
    if (!request.filters.isEmpty()) {
        dialog.setNameFilters(request.filters);
        const int index = qBound(1, request.filterIndex, int(request.filters.size()));
        dialog.selectNameFilter(request.filters.at(index - 1));
    }
    if (!request.directory.isEmpty()) {
        dialog.setDirectory(request.directory);
    }
    if (!request.fileName.isEmpty()) {
        dialog.selectFile(request.fileName);
    }
    if (!request.defaultSuffix.isEmpty()) {
        dialog.setDefaultSuffix(request.defaultSuffix);
    }
    // Qt's own dialog opens small: room for long names and several columns, within the screen.
    const QWidget* owner = dialog.parentWidget();
    if (const QScreen* screen = owner ? owner->screen() : QGuiApplication::primaryScreen()) {
        const QSize available = screen->availableGeometry().size();
        dialog.resize(qMin(kFileDialogSize.width(), available.width() * 9 / 10),
                      qMin(kFileDialogSize.height(), available.height() * 9 / 10));
    }
    // The detail columns open narrow whatever the dialog's size: wide enough for a size, a type
    // and a date and time in full, the name column taking the rest.
    if (auto* details = dialog.findChild<QTreeView*>()) {
        QHeaderView* header = details->header();
        const QFontMetrics metrics(details->font());
        const int pad = metrics.averageCharWidth() * 3;
        const QString date =
            QLocale().toString(QDateTime(QDate(2026, 12, 28), QTime(23, 58)), QLocale::ShortFormat);
        const int widths[] = {metrics.horizontalAdvance(QStringLiteral("999.9 KiB")) + pad,
                              metrics.horizontalAdvance(QStringLiteral("SQLite3 database")) + pad,
                              metrics.horizontalAdvance(date) + pad};
        for (int column = 1; column <= 3 && column < header->count(); ++column) {
            header->resizeSection(column, widths[column - 1]);
        }
        header->setStretchLastSection(false);
        header->setSectionResizeMode(0, QHeaderView::Stretch);
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    Dialogs::FileChoice choice;
    choice.fileName = dialog.selectedFiles().constFirst();
    choice.filterIndex = int(request.filters.indexOf(dialog.selectedNameFilter())) + 1;
    if (choice.filterIndex < 1) {
        choice.filterIndex = 1;
    }
    return choice;
}

} // namespace

bool QtDialogs::askYesNo(QWidget* parent, const QString& title, const QString& text)
{
    return QMessageBox::question(parent, title, text, QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::No) == QMessageBox::Yes;
}

void QtDialogs::information(QWidget* parent, const QString& text)
{
    QMessageBox::information(parent, QStringLiteral("Kestrum"), text);
}

void QtDialogs::warning(QWidget* parent, const QString& text)
{
    QMessageBox::warning(parent, QStringLiteral("Kestrum"), text);
}

void QtDialogs::notice(QWidget* parent, const QString& text, int milliseconds)
{
    auto* label = new QLabel(text, parent, Qt::ToolTip | Qt::FramelessWindowHint);
    label->setAttribute(Qt::WA_DeleteOnClose);
    label->setAlignment(Qt::AlignCenter);
    label->setMargin(16);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    font.setBold(true);
    label->setFont(font);
    label->adjustSize();
    if (parent) {
        const QRect area = parent->window()->geometry();
        label->move(area.center() - QPoint(label->width() / 2, label->height() / 2));
    }
    label->show();
    QTimer::singleShot(milliseconds, label, &QWidget::close);
}

std::optional<QString> QtDialogs::getText(QWidget* parent, const QString& title,
                                          const QString& prompt, const QString& initial)
{
    QInputDialog dialog(parent);
    dialog.setWindowTitle(title);
    dialog.setLabelText(prompt);
    dialog.setInputMode(QInputDialog::TextInput);
    dialog.setTextValue(initial);
    // Wide enough for a long title: 80 characters at least, the whole text when it is longer,
    // never wider than the screen.
    const QFontMetrics metrics(dialog.font());
    int width = qMax(metrics.averageCharWidth() * kTextBoxCharacters,
                     metrics.horizontalAdvance(initial) + metrics.averageCharWidth() * 4);
    if (const QScreen* screen = parent ? parent->screen() : QGuiApplication::primaryScreen()) {
        width = qMin(width, screen->availableGeometry().width() * 9 / 10);
    }
    if (auto* edit = dialog.findChild<QLineEdit*>()) {
        edit->setMinimumWidth(width);
    }
    if (dialog.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    return dialog.textValue();
}

std::optional<QColor> QtDialogs::getColour(QWidget* parent, const QColor& initial,
                                           const QString& title)
{
    const QColor colour = QColorDialog::getColor(initial, parent, title);
    return colour.isValid() ? std::optional<QColor>(colour) : std::nullopt;
}

std::optional<QFont> QtDialogs::getFont(QWidget* parent, const QFont& initial, const QString& title)
{
    bool ok = false;
    const QFont font = QFontDialog::getFont(&ok, initial, parent, title);
    return ok ? std::optional<QFont>(font) : std::nullopt;
}

std::optional<Dialogs::FileChoice> QtDialogs::getOpenFileName(QWidget* parent,
                                                              const FileRequest& request)
{
    QFileDialog dialog(parent, request.caption);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return runFileDialog(dialog, request);
}

std::optional<QStringList> QtDialogs::getOpenFileNames(QWidget* parent, const FileRequest& request)
{
    QFileDialog dialog(parent, request.caption);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFiles);
    if (!runFileDialog(dialog, request)) {
        return std::nullopt;
    }
    return dialog.selectedFiles();
}

std::optional<Dialogs::FileChoice> QtDialogs::getSaveFileName(QWidget* parent,
                                                              const FileRequest& request)
{
    QFileDialog dialog(parent, request.caption);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    return runFileDialog(dialog, request);
}

bool QtDialogs::print(QWidget* parent, QPrinter* printer)
{
    QPrintDialog dialog(printer, parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtDialogs::printSetup(QWidget* parent, QPrinter* printer)
{
    QPageSetupDialog dialog(printer, parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtDialogs::printPreview(QWidget* parent, QPrinter* printer,
                             const std::function<void(QPrinter*)>& paint)
{
    QPrintPreviewDialog dialog(printer, parent);
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
                     [&paint](QPrinter* p) { paint(p); });
    dialog.exec();
    return true;
}

int QtDialogs::exec(QDialog* dialog)
{
    return dialog->exec();
}

} // namespace kestrum::ui
