#pragma once

#include <QObject>

#include <functional>

class QPlainTextEdit;
class QWidget;

namespace kestrum::store {
class TRMData;
}

namespace kestrum::app {

class EditorArea;

// Showing the selected page: writes the page being left back if it was modified, switches the
// editors, loads the new page and its comment. Owns the content-modified and comment-modified
// flags.
class PageDisplay : public QObject
{
    Q_OBJECT
public:
    PageDisplay(store::TRMData& data, EditorArea& editors, QPlainTextEdit& comment,
                QWidget* dialogParent);

    void ShowNode();
    // Writes the page at the current node index back when it was modified; false when a save
    // failed (the user has been told).
    bool SaveModif();

    bool contentModified() const { return m_contentModified; }
    void setContentModified(bool modified) { m_contentModified = modified; }
    bool commentModified() const { return m_commentModified; }
    void setCommentModified(bool modified) { m_commentModified = modified; }
    bool isLoading() const { return m_loading; }

    // Clears the comment panel without marking it modified.
    void clearComment();
    // After every show: CheckButtons of the window.
    void setAfterShow(std::function<void()> afterShow) { m_afterShow = std::move(afterShow); }

private:
    void onContentChanged();

    store::TRMData& m_data;
    EditorArea& m_editors;
    QPlainTextEdit& m_comment;
    QWidget* m_dialogParent;
    std::function<void()> m_afterShow;
    bool m_contentModified = false;
    bool m_commentModified = false;
    bool m_loading = false;
    bool m_reloadPending = false;
};

} // namespace kestrum::app
