#include "TRMSizingDlg.h"

#include "editors/diagram/DiagramPageDocument.h"
#include "ui/Dialogs.h"

#include <QFormLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

namespace kestrum::diagram {

TRMSizingDlg::TRMSizingDlg(DiagramPageDocument& document, SizingValues& values, QWidget* parent)
    : QDialog(parent), m_document(document), m_values(values)
{
    setObjectName(QStringLiteral("RMSizingDlg"));
    setWindowTitle(QStringLiteral("Sizing"));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(new QFormLayout);
    m_node = addSlider(QStringLiteral("Node:"), 1, 100, 30);
    m_nodeText = addSlider(QStringLiteral("Node Text:"), 3, 30, 8);
    m_linkText = addSlider(QStringLiteral("Link Text:"), 3, 30, 5);
    m_link = addSlider(QStringLiteral("Link:"), 1, 40, 10);
    auto* close = new QPushButton(QStringLiteral("Close"));
    close->setObjectName(QStringLiteral("CloseBtn"));
    connect(close, &QPushButton::clicked, this, &TRMSizingDlg::CloseBtnClick);
    layout->addWidget(close, 0, Qt::AlignRight);
}

QSlider* TRMSizingDlg::addSlider(const QString& caption, int min, int max, int start)
{
    auto* slider = new QSlider(Qt::Horizontal);
    slider->setRange(min, max);
    slider->setValue(start);
    slider->setMinimumWidth(200);
    static_cast<QFormLayout*>(static_cast<QVBoxLayout*>(layout())->itemAt(0)->layout())
        ->addRow(caption, slider);
    connect(slider, &QSlider::valueChanged, this, [this, slider] { ApplyChanges(slider); });
    return slider;
}

void TRMSizingDlg::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    FormActivate();
}

void TRMSizingDlg::FormActivate()
{
    // A slider set to another value runs ApplyChanges like any change.
    m_node->setValue(m_values.nodeSize);
    m_nodeText->setValue(m_values.nodeTextSize);
    m_linkText->setValue(m_values.linkTextSize);
}

void TRMSizingDlg::ApplyChanges(QSlider* changed)
{
    m_values.nodeSize = m_node->value();
    m_values.nodeTextSize = m_nodeText->value();
    m_values.linkTextSize = m_linkText->value();
    m_values.edgeFactor = m_link->value() / 10.0;
    if (!isVisible()) {
        return;
    }
    if (changed == m_node) {
        m_document.change(
            [this](DiagramDocument& d) { DiagramSizing::applyNodeSize(d, m_values); });
    } else if (changed == m_nodeText) {
        m_document.change(
            [this](DiagramDocument& d) { DiagramSizing::applyNodeTextSize(d, m_values); });
    } else if (changed == m_linkText) {
        m_document.change(
            [this](DiagramDocument& d) { DiagramSizing::applyLinkTextSize(d, m_values); });
    } else if (changed == m_link) {
        Status status;
        m_document.change(
            [&](DiagramDocument& d) { status = DiagramSizing::applyLinkWidths(d, m_values); });
        if (!status) {
            ui::dialogs().warning(this, status.error());
        }
    }
}

void TRMSizingDlg::CloseBtnClick()
{
    done(QDialog::Accepted);
}

} // namespace kestrum::diagram
