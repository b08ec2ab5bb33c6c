// The diagram editor as the user drives it: the toolbar, the context menu, deletion, the edit
// dialog, the sizing dialog, pictures and printing (dialogs scripted).

#include "editors/diagram/widgets/TRMDiagramEditor.h"
#include "DiagramSamples.h"
#include "common/IniFile.h"
#include "editors/diagram/DiagramStream.h"
#include "editors/diagram/widgets/DiagramBlockItem.h"
#include "editors/diagram/widgets/DiagramScene.h"
#include "editors/diagram/widgets/DiagramView.h"
#include "editors/diagram/widgets/TRMEditBlockDlg.h"
#include "editors/diagram/widgets/TRMEditBlocksDlg.h"
#include "editors/diagram/widgets/TRMSizingDlg.h"
#include "support/ScriptedDialogs.h"
#include "ui/ColourSelector.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPrinter>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

using namespace kestrum;
using namespace kestrum::diagram;

class TRMDiagramEditorTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TRMDiagramEditor> m_editor;
    std::unique_ptr<test::ScopedScriptedDialogs> m_dialogs;
    QToolBar* m_toolBar = nullptr;

    TRMDiagramEditor& editor() { return *m_editor; }
    test::ScopedScriptedDialogs& dialogs() { return *m_dialogs; }
    const DiagramDocument& diagram() { return m_editor->diagramDocument().diagram(); }
    void click(const char* name) { editor().action(QLatin1String(name))->trigger(); }

    void load(const DiagramDocument& d)
    {
        const Status read = editor().document().readContent(DiagramStream::write(d));
        QVERIFY2(read, qPrintable(read.error()));
    }
    void select(std::vector<int> blocks, std::vector<int> links)
    {
        editor().diagramDocument().setSelection(blocks, links);
    }

private slots:
    void init()
    {
        m_dialogs = std::make_unique<test::ScopedScriptedDialogs>();
        m_editor = std::make_unique<TRMDiagramEditor>();
        m_toolBar = new QToolBar(m_editor.get());
        m_editor->populateToolBar(m_toolBar);
        m_editor->resize(800, 600);
        load(test::sampleRing());
    }
    void cleanup()
    {
        QVERIFY2(dialogs().unexpected().isEmpty(),
                 qPrintable(dialogs().unexpected().join(QLatin1String("; "))));
        m_editor.reset();
        m_dialogs.reset();
    }

    void toolbarHasEveryButtonInOrder()
    {
        QStringList names;
        for (QAction* a : m_toolBar->actions()) {
            names << a->objectName();
        }
        QCOMPARE(names, (QStringList{"btnDiagramSave", "btnDiagramPrint", "btnDiagramZoomIn",
                                     "btnDiagramZoomOut", "BtnDiagramPhoto", "btnDiagramSelect",
                                     "btnDiagramDrag", "btnDiagramRange", "btnDiagramText",
                                     "btnDiagramSizing", "btnDiagramCancel"}));
        QVERIFY(editor().action(QStringLiteral("btnDiagramSelect"))->isChecked());
        QVERIFY(editor().action(QStringLiteral("btnDiagramText"))->isChecked());
        QStringList popup;
        for (QAction* a : editor().popupMenu()->actions()) {
            popup << a->text();
        }
        QCOMPARE(popup, (QStringList{"Delete", "Edit..."}));
        QStringList copy;
        for (QAction* a : editor().copyMenu()->actions()) {
            copy << a->text();
        }
        QCOMPARE(copy, (QStringList{"Copy as bitmap", "Copy as metafile"}));
    }

    void zoomButtonsStepAndMarkTheDiagramChanged()
    {
        QSignalSpy modified(&editor().document(), &store::PageDocument::contentChanged);
        QVERIFY(!editor().diagramChanged());
        click("btnDiagramZoomIn");
        click("btnDiagramZoomIn");
        click("btnDiagramZoomIn");
        QCOMPARE(diagram().zoom(), 133);
        QCOMPARE(editor().view()->transform().m11(), 1.33);
        QVERIFY(editor().diagramChanged());
        QCOMPARE(modified.count(), 3);
        load(test::sampleRing());
        QCOMPARE(editor().view()->zoom(), 100); // a loaded page shows its own zoom
        click("btnDiagramZoomOut");
        click("btnDiagramZoomOut");
        click("btnDiagramZoomOut");
        QCOMPARE(diagram().zoom(), 73);
    }

    void cancelClearsTheFlagAndAsksForTheStoredPage()
    {
        QSignalSpy reload(&editor(), &ui::EditorPanel::reloadRequested);
        click("btnDiagramRange");
        QVERIFY(editor().diagramChanged());
        QCOMPARE(editor().view()->mode(), DiagramView::Mode::Range);
        click("btnDiagramCancel");
        QVERIFY(!editor().diagramChanged());
        QCOMPARE(reload.count(), 1);
    }

    void textButtonHidesLinkTextsAndFollowsLoadedPages()
    {
        editor().action(QStringLiteral("btnDiagramText"))->trigger(); // up
        QVERIFY(!diagram().linkTextsVisible());
        for (const DiagramLink& l : diagram().links()) {
            QVERIFY(!l.cells.front().visible);
        }
        QVERIFY(editor().diagramChanged());
        QByteArray stored;
        const auto written = editor().document().writeContent();
        QVERIFY2(written, qPrintable(written.error()));
        stored = *written;
        QVERIFY(!DiagramStream::read(stored)->linkTextsVisible());

        // Showing a page sets the button from its first link.
        load(test::sampleRing());
        QVERIFY(editor().action(QStringLiteral("btnDiagramText"))->isChecked());
        QVERIFY(editor().document().readContent(stored));
        QVERIFY(!editor().action(QStringLiteral("btnDiagramText"))->isChecked());
    }

    void handModeUnselectsEverything()
    {
        select({0, 1}, {2});
        click("btnDiagramDrag");
        QVERIFY(!diagram().anyBlockSelected() && !diagram().anyLinkSelected());
        QCOMPARE(editor().view()->mode(), DiagramView::Mode::Hand);
        for (QGraphicsItem* item : editor().scene()->items()) {
            QVERIFY(!item->isSelected());
        }
        click("btnDiagramSelect");
        QCOMPARE(editor().view()->mode(), DiagramView::Mode::Pointer);
    }

    void contextMenuOpensOnlyWithASelection()
    {
        editor().atDiagram1DControlMouseUp(Qt::RightButton, QPoint(10, 10));
        QVERIFY(!editor().popupMenu()->isVisible());
        select({}, {1});
        editor().atDiagram1DControlMouseUp(Qt::LeftButton, QPoint(10, 10));
        QVERIFY(!editor().popupMenu()->isVisible());
        editor().atDiagram1DControlMouseUp(Qt::RightButton, QPoint(10, 10));
        QVERIFY(editor().popupMenu()->isVisible());
        editor().popupMenu()->hide();
    }

    void deleteTakesTheBlocksLinksAndMarksModified()
    {
        QSignalSpy modified(&editor().document(), &store::PageDocument::contentChanged);
        // Selected on the surface, as the user does.
        editor().scene()->blockItems()[1]->setSelected(true);
        QVERIFY(diagram().blocks()[1].selected);
        click("Delete1");
        QCOMPARE(test::blockNames(diagram()), QStringLiteral("A C D"));
        QCOMPARE(test::linkNames(diagram()), QStringLiteral("C>D D>A"));
        QCOMPARE(editor().scene()->blockItems().size(), std::size_t(3));
        QCOMPARE(modified.count(), 1);
        // On an empty diagram nothing happens, but the page is still marked.
        load(DiagramDocument());
        click("Delete1");
        QVERIFY(diagram().isEmpty());
    }

    void movingABlockMovesItInTheDocument()
    {
        DiagramBlockItem* item = editor().scene()->blockItems()[2];
        item->setPos(250, 75);
        QCOMPARE(diagram().blocks()[2].left, 250.0);
        QCOMPARE(diagram().blocks()[2].top, 75.0);
    }

    void editWithTwoBlocksKeepsTheirTexts()
    {
        DiagramDocument d = test::sampleRing();
        d.blocks()[0].shape = BlockShape::RoundRect;
        d.blocks()[2].shape = BlockShape::Rectangle;
        d.blocks()[2].width = 44.6;
        load(d);
        select({0, 2}, {});
        QFont chosen(QStringLiteral("Liberation Serif"));
        chosen.setPointSize(14);
        chosen.setItalic(true);
        dialogs().answerFont(chosen);
        dialogs().answerExec([](QDialog* dialog) {
            auto* dlg = static_cast<TRMEditBlockDlg*>(dialog);
            // The values of the last selected block; no text for two blocks.
            if (dlg->sizeSpin()->value() != 45 || dlg->shapeList()->currentIndex() != 0 ||
                dlg->blockText()->isEnabled() || !dlg->blockText()->text().isEmpty() ||
                dlg->tabs()->isTabEnabled(1) || dlg->tabs()->currentIndex() != 0) {
                return int(QDialog::Rejected);
            }
            dlg->show();
            dlg->sizeSpin()->setValue(50);
            dlg->shapeList()->setCurrentIndex(3); // "Round Square"
            dlg->colourWell()->choose(QColor(0, 128, 0));
            dlg->BtnFontClick();
            dlg->SpeedButton2Click();
            return dlg->result();
        });
        editor().Edit1Click();
        for (int i : {0, 2}) {
            const DiagramBlock& b = diagram().blocks()[std::size_t(i)];
            QCOMPARE(b.width, 50.0);
            QCOMPARE(b.height, 50.0);
            QCOMPARE(b.shape, BlockShape::RoundSquare);
            QCOMPARE(b.colour, 0x008000);
            QCOMPARE(b.cells.front().font.name, QStringLiteral("Liberation Serif"));
            QCOMPARE(b.cells.front().font.size, 14);
            QCOMPARE(b.cells.front().font.style, FontStyle::Italic);
        }
        QCOMPARE(test::blockNames(diagram()), QStringLiteral("A B C D"));
        QCOMPARE(diagram().blocks()[1].width, 30.0); // not selected
    }

    void roundedRectangleBecomesADiamond()
    {
        DiagramDocument d = test::sampleRing();
        d.blocks()[1].shape = BlockShape::RoundRect;
        load(d);
        select({1}, {});
        dialogs().answerExec([](QDialog* dialog) {
            auto* dlg = static_cast<TRMEditBlockDlg*>(dialog);
            dlg->show();
            if (dlg->shapeList()->currentText() != QLatin1String("Diamond\t") ||
                !dlg->blockText()->isEnabled() || dlg->blockText()->text() != QLatin1String("B")) {
                return int(QDialog::Rejected);
            }
            dlg->blockText()->setText(QStringLiteral("Bridge")); // a single block: text applies
            return int(QDialog::Accepted);
        });
        editor().Edit1Click();
        QCOMPARE(diagram().blocks()[1].shape, BlockShape::Diamond);
        QCOMPARE(diagram().blocks()[1].cells.front().text, QStringLiteral("Bridge"));
    }

    void editLinksUnselectsThemAndAppliesToThatList()
    {
        select({}, {1, 3});
        QSignalSpy modified(&editor().document(), &store::PageDocument::contentChanged);
        dialogs().answerExec([this](QDialog* dialog) {
            auto* dlg = static_cast<TRMEditBlockDlg*>(dialog);
            if (dlg->tabs()->isTabEnabled(0) || dlg->tabs()->currentIndex() != 1 ||
                dlg->linkText()->isEnabled()) {
                return int(QDialog::Rejected);
            }
            dlg->show();
            // Activation took the selected links into its list and unselected them.
            if (dlg->linksToEdit() != std::vector<int>{1, 3} || diagram().anyLinkSelected()) {
                return int(QDialog::Rejected);
            }
            dlg->linkSizeSpin()->setValue(6);
            dlg->styleList()->setCurrentIndex(PenStyle::DashDot);
            dlg->linkColourWell()->choose(QColor(255, 0, 0));
            return int(QDialog::Accepted);
        });
        editor().Edit1Click();
        for (int i : {1, 3}) {
            const DiagramLink& l = diagram().links()[std::size_t(i)];
            QCOMPARE(l.penWidth, 6);
            QCOMPARE(l.style, PenStyle::DashDot);
            QCOMPARE(l.colour, 0x0000FF);
            QCOMPARE(l.cells.front().text, QString::number(i + 1)); // two links: texts stay
        }
        QCOMPARE(diagram().links()[0].penWidth, 1);
        QVERIFY(modified.count() >= 1);
    }

    void editWithNothingSelectedHasBothTabsDisabled()
    {
        bool checked = false;
        dialogs().answerExec([&checked](QDialog* dialog) {
            auto* dlg = static_cast<TRMEditBlockDlg*>(dialog);
            checked = !dlg->tabs()->isTabEnabled(0) && !dlg->tabs()->isTabEnabled(1);
            return int(QDialog::Accepted);
        });
        const DiagramDocument before = diagram();
        editor().Edit1Click();
        QVERIFY(checked);
        QVERIFY(diagram() == before);
    }

    void sizingNodeSliderAndLinkWeights()
    {
        DiagramDocument d = test::sampleRing();
        d.blocks()[0].cells.front().font.size = 20;
        d.links()[2].cells.front().text = QStringLiteral("heavy");
        load(d);
        dialogs().answerExec([](QDialog* dialog) {
            auto* dlg = static_cast<TRMSizingDlg*>(dialog);
            dlg->show();
            dlg->nodeSlider()->setValue(100);
            dlg->linkSlider()->setValue(20); // edge factor 2: widths round(7.92 x weight)
            return int(QDialog::Accepted);
        });
        editor().btnDiagramSizingClick();
        QVERIFY(editor().diagramChanged());
        for (const DiagramBlock& b : diagram().blocks()) {
            QCOMPARE(b.width, 100.0);
            QCOMPARE(b.height, 100.0);
            QCOMPARE(b.cells.front().font.size, 8);
        }
        QCOMPARE(diagram().links()[0].penWidth, 8);
        QCOMPARE(diagram().links()[1].penWidth, 16);
        QCOMPARE(diagram().links()[2].penWidth, 1); // the pass stopped here
        QCOMPARE(diagram().links()[0].colour, 0x808080);
        QCOMPARE(dialogs().messages(),
                 QStringList{QStringLiteral("'heavy' is not a valid floating point value")});
        // The values are kept for the session.
        QCOMPARE(editor().sizingValues().nodeSize, 100);
        QCOMPARE(editor().sizingValues().edgeFactor, 2.0);
    }

    void saveButtonWritesThePictureWithTheFiltersExtension()
    {
        QTemporaryDir dir;
        dialogs().answerSaveFile(
            ui::Dialogs::FileChoice{dir.filePath(QStringLiteral("map.jpeg")), 1});
        click("btnDiagramSave");
        const QImage png(dir.filePath(QStringLiteral("map.PNG")));
        QVERIFY(!png.isNull());
        QCOMPARE(png.size(), editor().picture().size());
        QVERIFY(!QApplication::clipboard()->image().isNull());
        dialogs().answerSaveFile(
            ui::Dialogs::FileChoice{dir.filePath(QStringLiteral("map.png")), 3});
        click("btnDiagramSave");
        QFile jpeg(dir.filePath(QStringLiteral("map.JPG")));
        QVERIFY(jpeg.open(QIODevice::ReadOnly));
        QVERIFY(jpeg.read(3) == QByteArray("\xFF\xD8\xFF"));
    }

    void copyMenuPutsPicturesOnTheClipboard()
    {
        click("MenuItem1");
        QCOMPARE(QApplication::clipboard()->image().size(), editor().picture().size());
        click("MenuItem2");
        const QMimeData* data = QApplication::clipboard()->mimeData();
        QVERIFY(data->data(QStringLiteral("image/svg+xml")).contains("<svg"));
    }

    void printShowsSetupThenPreview()
    {
        dialogs().answerPrint(false); // setup cancelled: no preview
        click("btnDiagramPrint");
        dialogs().answerPrint(true);
        dialogs().answerPrint(true);
        click("btnDiagramPrint");
        QStringList kinds;
        for (const auto& s : dialogs().shown()) {
            kinds << s.kind;
        }
        QCOMPARE(kinds, (QStringList{"print setup", "print setup", "print preview"}));
    }

    // The styling dialog over the diagram's own grouping, its styles read from and saved to its
    // settings file.
    void blockStylesApplyToTheGroupsAndAreKept()
    {
        // 0 <- 1 <- 2: a target, a level-1 and a level-2 block; 3 is in no group.
        DiagramDocument d;
        for (int i = 0; i < 4; ++i) {
            d.blocks().push_back(test::sampleBlock(QString::number(i), i * 60, 0));
        }
        d.links().push_back(test::sampleLink(1, 0, QStringLiteral("1")));
        d.links().push_back(test::sampleLink(2, 1, QStringLiteral("2")));
        load(d);
        const QString file = TRMDiagramEditor::blockStylesFile();
        QFile::remove(file);
        {
            common::IniFile ini(file);
            ini.writeInteger(QStringLiteral("Level1Blocks"), QStringLiteral("Size"), 44);
            ini.writeInteger(QStringLiteral("Level1Blocks"), QStringLiteral("FontStyle"), 2);
            QVERIFY(ini.save());
        }
        dialogs().answerExec([](QDialog* dialog) {
            auto* dlg = static_cast<TRMEditBlocksDlg*>(dialog);
            if (dlg->groupControls(1).size->value() != 44 ||
                dlg->groups().blocks[2] != std::vector<int>{2}) {
                return int(QDialog::Rejected);
            }
            dlg->show();
            dlg->groupControls(0).shape->setCurrentIndex(-1); // none chosen: ellipse
            dlg->groupControls(0).size->setValue(70);
            dlg->groupControls(2).shape->setCurrentIndex(2);
            dlg->linkStyleList()->setCurrentIndex(PenStyle::Dash);
            dlg->btnApplyClick();
            dlg->btnCancelClick();
            return dlg->result();
        });
        editor().EditBlockStyles();
        QCOMPARE(diagram().blocks()[0].width, 70.0);
        QCOMPARE(diagram().blocks()[0].shape, BlockShape::Ellipse);
        QCOMPARE(diagram().blocks()[0].colour, 0x0000FF);
        QCOMPARE(diagram().blocks()[1].width, 44.0);
        QCOMPARE(diagram().blocks()[1].colour, 0xDA985C);
        QCOMPARE(diagram().blocks()[1].cells.front().font.style, FontStyle::Italic);
        QCOMPARE(diagram().blocks()[2].shape, BlockShape::Diamond);
        // Level 2 takes level 1's font style.
        QCOMPARE(diagram().blocks()[2].cells.front().font.style, FontStyle::Italic);
        QCOMPARE(diagram().blocks()[3], test::sampleBlock(QStringLiteral("3"), 180, 0));
        QCOMPARE(diagram().links()[1].style, PenStyle::Dash);
        // What the dialog showed is kept.
        common::IniFile ini(file);
        QVERIFY(ini.load());
        QCOMPARE(ini.readInteger(QStringLiteral("TargetBlocks"), QStringLiteral("Size"), 0), 70);
        QCOMPARE(ini.readInteger(QStringLiteral("TargetBlocks"), QStringLiteral("Shape"), 0), -1);
        QCOMPARE(ini.readInteger(QStringLiteral("Level2Blocks"), QStringLiteral("FontStyle"), -1),
                 2);
        QCOMPARE(ini.readInteger(QStringLiteral("LinksOptions"), QStringLiteral("Style"), 0), 1);
    }

    void fitToCenterFitsAndCentres()
    {
        editor().view()->resize(800, 600);
        editor().FitToCenter();
        const int zoom = diagram().zoom();
        const QSize area = editor().view()->viewport()->size();
        QCOMPARE(zoom, DiagramDocument(test::sampleRing()).fitZoom(QSizeF(area), 10));
        // S = (width / zoom x 100 - (300 + 0)) / 2 - 15, added to every left.
        const double s = (area.width() / double(zoom) * 100 - 300) / 2 - 15;
        QVERIFY(s > 0);
        QCOMPARE(diagram().blocks()[0].left, s);
    }
};

QTEST_MAIN(TRMDiagramEditorTest)
#include "TRMDiagramEditorTest.moc"
