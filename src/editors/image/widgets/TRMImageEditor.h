#pragma once

#include "editors/image/ImagePageDocument.h"
#include "ui/EditorPanel.h"

#include <QHash>

class QAction;
class QMenu;
class QScrollArea;

namespace kestrum::image {

class ImageView;

// The image page editor ("Image Editor"): a scroll box holding the picture's view at the
// program-wide zoom, the context menu with "Open file", and the commands of the main window's
// image toolbar (save, copy, zoom in, zoom out).
class TRMImageEditor : public ui::EditorPanel
{
    Q_OBJECT
public:
    explicit TRMImageEditor(QWidget* parent = nullptr);

    store::PageDocument& document() override { return m_document; }
    void populateToolBar(QToolBar* toolBar) override;

    ImagePageDocument& imageDocument() { return m_document; }
    ImageView* view() const { return m_view; }
    QScrollArea* scrollBox() const { return m_scrollBox; }
    QMenu* popupMenu() const { return m_popupMenu; }
    QAction* action(const QString& name) const { return m_actions.value(name); }

    // The zoom in percent, shared by every image page of the run.
    static int zoom();
    static void setZoomPercent(int percent);

    // ---- operations
    void SetZoom();
    void ZoomIn();
    void ZoomOut();
    // Opens a picture file as the page's picture (the page changes); false with a message
    // when it cannot be read.
    bool LoadPictureFile(const QString& fileName);
    // The save dialog, then the picture written with the chosen filter's extension.
    void SavePicture(const QImage& picture);

    // ---- commands
    void Load1Click();
    void SaveImageBtnClick();
    void CutImageBtnClick();
    void ZoomInImageBtnClick() { ZoomIn(); }
    void ZoomOutImageBtnClick() { ZoomOut(); }

signals:
    // The text of the main window's first status panel (" 110%").
    void statusText(const QString& text);

private:
    QAction* addAction(const QString& name, const QString& text, void (TRMImageEditor::*slot)());
    void showStatus(const QString& text);

    ImagePageDocument m_document;
    QScrollArea* m_scrollBox = nullptr;
    ImageView* m_view = nullptr;
    QMenu* m_popupMenu = nullptr;
    QHash<QString, QAction*> m_actions;
    QString m_saveFolder;
};

} // namespace kestrum::image
