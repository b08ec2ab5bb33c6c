#pragma once

#include "editors/diagram/DiagramDocument.h"
#include "store/PageDocument.h"

#include <functional>

namespace kestrum::diagram {

// The document of diagram pages: the store reads pages into it and saves them from it (content:
// the diagram stream). Views follow diagramChanged(); user edits go through change(), which
// also tells the page it was modified; loading and clearing do not.
class DiagramPageDocument : public store::PageDocument
{
    Q_OBJECT
public:
    explicit DiagramPageDocument(QObject* parent = nullptr);

    store::EditorKind kind() const override { return store::EditorKind::Diagram; }
    Result<QByteArray> writeContent() override;
    // An empty content is an empty diagram.
    Status readContent(const QByteArray& in) override;
    void clear() override;

    const DiagramDocument& diagram() const { return m_diagram; }

    // A user edit: `edit` changes the diagram, the views follow and the page is modified.
    void change(const std::function<void(DiagramDocument&)>& edit);
    // A change the views show but that does not modify the page by itself (selection).
    void changeQuietly(const std::function<void(DiagramDocument&)>& edit);
    // Tells the page it changed without changing anything (clicks, focus, moves).
    void markModified() { emit contentChanged(); }
    // Replaces the whole diagram as an edit (tests, tools).
    void setDiagram(DiagramDocument diagram);

    // A user's zoom: the views rescale without rebuilding; the page is modified.
    void setZoom(int percent);
    // Block positions only, as the view moves items (the views need not rebuild).
    void moveBlock(int index, double left, double top);
    void setSelection(const std::vector<int>& blocks, const std::vector<int>& links);

signals:
    // The diagram changed in any way: views rebuild what they show.
    void diagramChanged();
    // Only the zoom changed.
    void zoomChanged(int percent);

private:
    DiagramDocument m_diagram;
};

} // namespace kestrum::diagram
