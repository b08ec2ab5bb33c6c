#include "DiagramPageDocument.h"

#include "editors/diagram/DiagramStream.h"

namespace kestrum::diagram {

DiagramPageDocument::DiagramPageDocument(QObject* parent) : store::PageDocument(parent) {}

Result<QByteArray> DiagramPageDocument::writeContent()
{
    return DiagramStream::write(m_diagram);
}

Status DiagramPageDocument::readContent(const QByteArray& in)
{
    if (in.isEmpty()) {
        clear();
        return {};
    }
    Result<DiagramDocument> read = DiagramStream::read(in);
    if (!read) {
        clear();
        return fail(read.error());
    }
    m_diagram = std::move(*read);
    emit diagramChanged();
    emit contentReset();
    return {};
}

void DiagramPageDocument::clear()
{
    m_diagram.clear();
    emit diagramChanged();
    emit contentReset();
}

void DiagramPageDocument::change(const std::function<void(DiagramDocument&)>& edit)
{
    edit(m_diagram);
    emit diagramChanged();
    emit contentChanged();
}

void DiagramPageDocument::changeQuietly(const std::function<void(DiagramDocument&)>& edit)
{
    edit(m_diagram);
    emit diagramChanged();
}

void DiagramPageDocument::setDiagram(DiagramDocument diagram)
{
    change([&](DiagramDocument& d) { d = std::move(diagram); });
}

void DiagramPageDocument::setZoom(int percent)
{
    m_diagram.setZoom(percent);
    emit zoomChanged(percent);
    emit contentChanged();
}

void DiagramPageDocument::moveBlock(int index, double left, double top)
{
    if (index < 0 || index >= int(m_diagram.blocks().size())) {
        return;
    }
    DiagramBlock& b = m_diagram.blocks()[std::size_t(index)];
    b.left = left;
    b.top = top;
}

void DiagramPageDocument::setSelection(const std::vector<int>& blocks,
                                       const std::vector<int>& links)
{
    m_diagram.selectAll(false);
    for (int i : blocks) {
        if (i >= 0 && i < int(m_diagram.blocks().size())) {
            m_diagram.blocks()[std::size_t(i)].selected = true;
        }
    }
    for (int i : links) {
        if (i >= 0 && i < int(m_diagram.links().size())) {
            m_diagram.links()[std::size_t(i)].selected = true;
        }
    }
}

} // namespace kestrum::diagram
