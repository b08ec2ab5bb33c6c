#pragma once

#include <QObject>
#include <QTextObjectInterface>

class QTextCursor;
class QTextDocument;

namespace kestrum::text {

// Hidden text (RTF \v) is kept in the document as one object character per run: the run's
// characters live in the object's format (TextProperty::HiddenText) beside its character
// format, and the object takes no room when laid out. So hidden text is hidden on screen and in
// print, left out of searches and plain-text exports, and written back as hidden text.
class HiddenTextObject : public QObject, public QTextObjectInterface
{
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)
public:
    // Makes the document's layout give hidden runs no room (once per document). A document
    // shown in a view needs it; without a handler the layout gives unknown objects no room
    // either, so headless documents go without (and without the cost of a layout).
    static void registerOn(QTextDocument* document);
    // Inserts `text` as a hidden run with character format `format`.
    static void insert(QTextCursor& cursor, const QString& text, const QTextCharFormat& format);
    static bool isHidden(const QTextFormat& format);
    static QString text(const QTextFormat& format);

    QSizeF intrinsicSize(QTextDocument* doc, int posInDocument, const QTextFormat& format) override;
    void drawObject(QPainter* painter, const QRectF& rect, QTextDocument* doc, int posInDocument,
                    const QTextFormat& format) override;

private:
    using QObject::QObject;
};

} // namespace kestrum::text
