#include "RtfListTable.h"

#include "editors/text/ListNumbering.h"

#include <QTextListFormat>

#include <algorithm>

namespace kestrum::text {

namespace {

// Number formats of \levelnfcN (the older \pndec, \pnucrm... map onto the first five).
constexpr int kFormatDecimal = 0;
constexpr int kFormatUpperRoman = 1;
constexpr int kFormatLowerRoman = 2;
constexpr int kFormatUpperLetter = 3;
constexpr int kFormatLowerLetter = 4;
constexpr int kFormatBullet = 23;
constexpr int kFormatNone = 255;

// Level placeholders in a level text are the characters \'00 to \'08.
constexpr char16_t kLastPlaceholder = 8;

// The list style of an RTF number format (anything unknown is decimal).
QTextListFormat::Style numberingStyle(int format)
{
    switch (format) {
    case kFormatUpperRoman:
        return QTextListFormat::ListUpperRoman;
    case kFormatLowerRoman:
        return QTextListFormat::ListLowerRoman;
    case kFormatUpperLetter:
        return QTextListFormat::ListUpperAlpha;
    case kFormatLowerLetter:
        return QTextListFormat::ListLowerAlpha;
    default:
        return QTextListFormat::ListDecimal;
    }
}

// The bullet shape a level text shows (a disc unless it is a circle or a square).
QTextListFormat::Style bulletStyle(const QString& text)
{
    if (text.contains(QLatin1Char('o')) || text.contains(QChar(0x25CB)) ||
        text.contains(QChar(0xF06F))) {
        return QTextListFormat::ListCircle;
    }
    if (text.contains(QChar(0xF0A7)) || text.contains(QChar(0x25AA)) ||
        text.contains(QChar(0x25A0)) || text.contains(QChar(0xF06E))) {
        return QTextListFormat::ListSquare;
    }
    return QTextListFormat::ListDisc;
}

} // namespace

void RtfListTable::startList()
{
    if (m_lists.size() < std::size_t(rtf::kMaxListDefinitions)) {
        m_lists.emplace_back();
    }
}

void RtfListTable::startLevel()
{
    if (!m_lists.empty() && m_lists.back().levels.size() < std::size_t(rtf::kMaxListLevels)) {
        m_lists.back().levels.emplace_back();
    }
}

void RtfListTable::setListId(int id)
{
    if (!m_lists.empty()) {
        m_lists.back().id = id;
    }
}

void RtfListTable::setLevelFormat(int format)
{
    if (!m_lists.empty() && !m_lists.back().levels.empty()) {
        m_lists.back().levels.back().format = format;
    }
}

void RtfListTable::setLevelStart(int start)
{
    if (!m_lists.empty() && !m_lists.back().levels.empty()) {
        m_lists.back().levels.back().start = start;
    }
}

void RtfListTable::setLevelText(const QString& text)
{
    if (!m_lists.empty() && !m_lists.back().levels.empty()) {
        QString value = text;
        if (value.endsWith(QLatin1Char(';'))) {
            value.chop(1);
        }
        m_lists.back().levels.back().text = value;
    }
}

void RtfListTable::addOverride(int number)
{
    if (m_overrides.size() < rtf::kMaxListDefinitions) {
        m_overrides.insert(number, m_overrideList);
    }
}

void RtfListTable::word(const RtfWord& word, RtfDestination destination)
{
    switch (word.keyword) {
    case RtfKeyword::ListId:
        if (destination == RtfDestination::ListTable) {
            setListId(word.parameter);
        } else if (destination == RtfDestination::ListOverrideTable) {
            setOverrideListId(word.parameter);
        }
        break;
    case RtfKeyword::LevelNfc:
        if (destination == RtfDestination::ListTable) {
            setLevelFormat(word.parameter);
        }
        break;
    case RtfKeyword::LevelStartAt:
        if (destination == RtfDestination::ListTable) {
            setLevelStart(word.parameter);
        }
        break;
    default:
        legacyWord(word);
        break;
    }
}

void RtfListTable::legacyWord(const RtfWord& word)
{
    switch (word.keyword) {
    case RtfKeyword::PnLvlBlt:
        m_pn.bullet = true;
        m_pn.level = 1;
        break;
    case RtfKeyword::PnLvlBody:
    case RtfKeyword::PnLvlCont:
        m_pn.bullet = false;
        m_pn.level = 1;
        break;
    case RtfKeyword::PnLvl:
        m_pn.bullet = false;
        m_pn.level = qBound(1, word.parameter, rtf::kMaxListLevels);
        break;
    case RtfKeyword::PnDec:
        m_pn.style = kFormatDecimal;
        break;
    case RtfKeyword::PnUcRm:
        m_pn.style = kFormatUpperRoman;
        break;
    case RtfKeyword::PnLcRm:
        m_pn.style = kFormatLowerRoman;
        break;
    case RtfKeyword::PnUcLtr:
        m_pn.style = kFormatUpperLetter;
        break;
    case RtfKeyword::PnLcLtr:
        m_pn.style = kFormatLowerLetter;
        break;
    case RtfKeyword::PnStart:
        m_pn.start = word.parameter;
        break;
    default:
        break;
    }
}

int RtfListTable::addLegacy()
{
    if (m_legacy.size() >= std::size_t(rtf::kMaxListDefinitions)) {
        return -1;
    }
    m_legacy.push_back(m_pn);
    return int(m_legacy.size()) - 1;
}

bool RtfListTable::format(const RtfParaState& state, RtfParagraph& out) const
{
    // \lsN with no list table behind it: the paragraph's \pn numbering describes the list.
    const bool hasLegacy = state.legacyList >= 0 && std::size_t(state.legacyList) < m_legacy.size();
    if (state.listOverride > 0 && (!hasLegacy || m_overrides.contains(state.listOverride))) {
        return listFormat(state, out);
    }
    if (hasLegacy && std::size_t(state.legacyList) < m_legacy.size()) {
        return legacyFormat(state, out);
    }
    return false;
}

bool RtfListTable::listFormat(const RtfParaState& state, RtfParagraph& out) const
{
    const int level = qBound(0, state.listLevel, rtf::kMaxListLevels - 1);
    const int listId = m_overrides.value(state.listOverride, -1);
    const auto def = std::find_if(m_lists.begin(), m_lists.end(),
                                  [&](const List& list) { return list.id == listId; });
    Level levelDef;
    levelDef.format = kFormatBullet;
    if (def != m_lists.end() && std::size_t(level) < def->levels.size()) {
        levelDef = def->levels[std::size_t(level)];
    } else if (def == m_lists.end()) {
        levelDef.format = kFormatDecimal; // an unknown list: number it
    }
    if (levelDef.format == kFormatNone) {
        return false;
    }
    QTextListFormat list;
    list.setIndent(level + 1);
    // The level text: its length, then the text with level placeholders.
    const QString text = levelDef.text.mid(1);
    if (levelDef.format == kFormatBullet) {
        list.setStyle(bulletStyle(text));
    } else {
        list.setStyle(numberingStyle(levelDef.format));
        ListNumbering::setStart(list, levelDef.start);
        qsizetype first = -1;
        qsizetype last = -1;
        for (qsizetype i = 0; i < text.size(); ++i) {
            if (text[i].unicode() <= kLastPlaceholder) {
                if (first < 0) {
                    first = i;
                }
                last = i;
            }
        }
        if (first >= 0) {
            list.setNumberPrefix(text.left(first));
            list.setNumberSuffix(text.mid(last + 1));
        } else {
            list.setNumberSuffix(QStringLiteral("."));
        }
    }
    out.list = list;
    out.listKey = QStringLiteral("ls:%1:%2").arg(state.listOverride).arg(level);
    return true;
}

bool RtfListTable::legacyFormat(const RtfParaState& state, RtfParagraph& out) const
{
    const Legacy& legacy = m_legacy[std::size_t(state.legacyList)];
    QTextListFormat list;
    list.setIndent(qBound(1, legacy.level, rtf::kMaxListLevels));
    if (legacy.bullet) {
        list.setStyle(bulletStyle(legacy.before));
    } else {
        list.setStyle(numberingStyle(legacy.style));
        ListNumbering::setStart(list, legacy.start);
        list.setNumberPrefix(legacy.before);
        list.setNumberSuffix(legacy.after);
    }
    out.list = list;
    out.listKey = QStringLiteral("pn:%1:%2:%3:%4:%5")
                      .arg(legacy.bullet ? -1 : legacy.style)
                      .arg(list.indent())
                      .arg(legacy.start)
                      .arg(legacy.before, legacy.after);
    out.listContinuesOnlyAdjacent = true;
    return true;
}

} // namespace kestrum::text
