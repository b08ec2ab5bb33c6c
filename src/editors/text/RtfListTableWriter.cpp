#include "RtfListTableWriter.h"

#include "common/RtfEmitter.h"
#include "editors/text/ListNumbering.h"

#include <QTextList>

#include <algorithm>

namespace kestrum::text {

namespace {

// List ids and template ids are numbered from here (\listid1001 is the first list).
constexpr int kFirstListId = 1001;
constexpr int kLevels = 9;
// Prefix and suffix of a number are cut to this many characters.
constexpr int kMaxAffix = 20;
// The hanging first line of a list paragraph, where its number or bullet goes.
constexpr int kNumberIndent = -360;

// Number formats of \levelnfcN.
constexpr int kFormatDecimal = 0;
constexpr int kFormatUpperRoman = 1;
constexpr int kFormatLowerRoman = 2;
constexpr int kFormatUpperLetter = 3;
constexpr int kFormatLowerLetter = 4;
constexpr int kFormatBullet = 23;

int numberFormat(QTextListFormat::Style style)
{
    switch (style) {
    case QTextListFormat::ListDecimal:
        return kFormatDecimal;
    case QTextListFormat::ListUpperRoman:
        return kFormatUpperRoman;
    case QTextListFormat::ListLowerRoman:
        return kFormatLowerRoman;
    case QTextListFormat::ListUpperAlpha:
        return kFormatUpperLetter;
    case QTextListFormat::ListLowerAlpha:
        return kFormatLowerLetter;
    default:
        return kFormatBullet;
    }
}

// The level text: its length as a byte, then the text with the level's placeholder (\'0N).
void writeLevelText(common::RtfEmitter& rtf, const QTextListFormat& format, int nfc, int level)
{
    rtf.raw("{\\leveltext");
    if (nfc == kFormatBullet) {
        QString bullet(QChar(0x2022));
        if (format.style() == QTextListFormat::ListCircle) {
            bullet = QStringLiteral("o");
        } else if (format.style() == QTextListFormat::ListSquare) {
            bullet = QString(QChar(0x25AA));
        }
        rtf.raw("\\'01");
        rtf.text(bullet);
        rtf.raw(";}{\\levelnumbers;}");
        return;
    }
    const QString prefix = format.numberPrefix().left(kMaxAffix);
    const QString suffix = format.hasProperty(QTextFormat::ListNumberSuffix)
                               ? format.numberSuffix().left(kMaxAffix)
                               : QStringLiteral(".");
    const int length = int(prefix.size() + 1 + suffix.size());
    rtf.hexByte(length);
    rtf.text(prefix);
    rtf.hexByte(level);
    rtf.text(suffix);
    rtf.raw(";}{\\levelnumbers");
    rtf.hexByte(int(prefix.size() + 1));
    rtf.raw(";}");
}

} // namespace

void RtfListTableWriter::write(common::RtfEmitter& rtf, const QList<const QTextList*>& lists)
{
    if (lists.isEmpty()) {
        return;
    }
    rtf.raw("{\\*\\listtable");
    for (int i = 0; i < lists.size(); ++i) {
        const QTextListFormat format = lists[i]->format();
        const int levels = std::clamp(format.indent(), 1, kLevels) == 1 ? 1 : kLevels;
        rtf.raw("\n{\\list");
        rtf.word("listtemplateid", kFirstListId + i);
        if (levels == 1) {
            rtf.word("listsimple");
        }
        const int nfc = numberFormat(format.style());
        for (int level = 0; level < levels; ++level) {
            rtf.raw("{\\listlevel");
            rtf.word("levelnfc", nfc);
            rtf.word("levelnfcn", nfc);
            rtf.word("leveljc", 0);
            rtf.word("levelfollow", 0);
            rtf.word("levelstartat", ListNumbering::start(format));
            writeLevelText(rtf, format, nfc, level);
            rtf.word("fi", kNumberIndent);
            rtf.word("li", kIndentPerLevel * (level + 1));
            rtf.raw("}");
        }
        rtf.word("listid", kFirstListId + i);
        rtf.raw("}");
    }
    rtf.raw("}\n{\\*\\listoverridetable");
    for (int i = 0; i < lists.size(); ++i) {
        rtf.raw("{\\listoverride");
        rtf.word("listid", kFirstListId + i);
        rtf.word("listoverridecount", 0);
        rtf.word("ls", i + 1);
        rtf.raw("}");
    }
    rtf.raw("}\n");
}

} // namespace kestrum::text
