#include "HiddenTextObject.h"

#include "editors/text/TextProperties.h"

#include <QAbstractTextDocumentLayout>
#include <QTextCursor>
#include <QTextDocument>

namespace kestrum::text {

void HiddenTextObject::registerOn(QTextDocument* document)
{
    if (document->findChild<HiddenTextObject*>(QString(), Qt::FindDirectChildrenOnly)) {
        return;
    }
    auto* handler = new HiddenTextObject(document);
    document->documentLayout()->registerHandler(kHiddenTextObjectType, handler);
}

void HiddenTextObject::insert(QTextCursor& cursor, const QString& text,
                              const QTextCharFormat& format)
{
    QTextCharFormat object = format;
    object.setObjectType(kHiddenTextObjectType);
    object.setProperty(TextProperty::HiddenText, text);
    cursor.insertText(QString(QChar::ObjectReplacementCharacter), object);
}

bool HiddenTextObject::isHidden(const QTextFormat& format)
{
    return format.objectType() == kHiddenTextObjectType;
}

QString HiddenTextObject::text(const QTextFormat& format)
{
    return format.stringProperty(TextProperty::HiddenText);
}

QSizeF HiddenTextObject::intrinsicSize(QTextDocument*, int, const QTextFormat&)
{
    return {0, 0};
}

void HiddenTextObject::drawObject(QPainter*, const QRectF&, QTextDocument*, int, const QTextFormat&)
{}

} // namespace kestrum::text
