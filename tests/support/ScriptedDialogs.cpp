#include "ScriptedDialogs.h"

#include <QDialog>

namespace kestrum::test {

ScriptedDialogs::ScriptedDialogs() = default;
ScriptedDialogs::~ScriptedDialogs() = default;

// GCC 12 at -O2 reports the moved optional<FileChoice> as maybe uninitialized (a false positive).
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
template <typename T>
std::optional<T> ScriptedDialogs::next(std::deque<T>& queue, const QString& what)
{
    if (queue.empty()) {
        m_unexpected << what;
        return std::nullopt;
    }
    T value = std::move(queue.front());
    queue.pop_front();
    return value;
}
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

QStringList ScriptedDialogs::messages() const
{
    QStringList out;
    for (const Shown& s : m_shown) {
        if (s.kind == QLatin1String("question") || s.kind == QLatin1String("information") ||
            s.kind == QLatin1String("warning") || s.kind == QLatin1String("notice")) {
            out << s.text;
        }
    }
    return out;
}

void ScriptedDialogs::clearRecord()
{
    m_shown.clear();
    m_unexpected.clear();
    m_lastFileRequest.reset();
}

bool ScriptedDialogs::scriptUsedUp() const
{
    return m_yesNo.empty() && m_texts.empty() && m_colours.empty() && m_fonts.empty() &&
           m_openFiles.empty() && m_openFileLists.empty() && m_saveFiles.empty() &&
           m_prints.empty() && m_execs.empty();
}

bool ScriptedDialogs::askYesNo(QWidget*, const QString&, const QString& text)
{
    m_shown.push_back({QStringLiteral("question"), text});
    return next(m_yesNo, QStringLiteral("question: ") + text).value_or(false);
}

void ScriptedDialogs::information(QWidget*, const QString& text)
{
    m_shown.push_back({QStringLiteral("information"), text});
}

void ScriptedDialogs::warning(QWidget*, const QString& text)
{
    m_shown.push_back({QStringLiteral("warning"), text});
}

void ScriptedDialogs::notice(QWidget*, const QString& text, int milliseconds)
{
    m_shown.push_back({QStringLiteral("notice"), text});
    m_noticeMs = milliseconds;
}

std::optional<QString> ScriptedDialogs::getText(QWidget*, const QString& title,
                                                const QString& prompt, const QString& initial)
{
    m_shown.push_back({QStringLiteral("text"), title + QLatin1Char('|') + prompt});
    m_lastInitialText = initial;
    return next(m_texts, QStringLiteral("text: ") + prompt).value_or(std::nullopt);
}

std::optional<QColor> ScriptedDialogs::getColour(QWidget*, const QColor&, const QString& title)
{
    m_shown.push_back({QStringLiteral("colour"), title});
    return next(m_colours, QStringLiteral("colour")).value_or(std::nullopt);
}

std::optional<QFont> ScriptedDialogs::getFont(QWidget*, const QFont&, const QString& title)
{
    m_shown.push_back({QStringLiteral("font"), title});
    return next(m_fonts, QStringLiteral("font")).value_or(std::nullopt);
}

std::optional<ScriptedDialogs::FileChoice>
ScriptedDialogs::getOpenFileName(QWidget*, const FileRequest& request)
{
    m_shown.push_back({QStringLiteral("open"), request.caption});
    m_lastFileRequest = request;
    return next(m_openFiles, QStringLiteral("open file: ") + request.caption)
        .value_or(std::nullopt);
}

std::optional<QStringList> ScriptedDialogs::getOpenFileNames(QWidget*, const FileRequest& request)
{
    m_shown.push_back({QStringLiteral("open files"), request.caption});
    m_lastFileRequest = request;
    return next(m_openFileLists, QStringLiteral("open files: ") + request.caption)
        .value_or(std::nullopt);
}

std::optional<ScriptedDialogs::FileChoice>
ScriptedDialogs::getSaveFileName(QWidget*, const FileRequest& request)
{
    m_shown.push_back({QStringLiteral("save"), request.caption});
    m_lastFileRequest = request;
    return next(m_saveFiles, QStringLiteral("save file: ") + request.caption)
        .value_or(std::nullopt);
}

bool ScriptedDialogs::print(QWidget*, QPrinter*)
{
    m_shown.push_back({QStringLiteral("print"), {}});
    return next(m_prints, QStringLiteral("print")).value_or(false);
}

bool ScriptedDialogs::printSetup(QWidget*, QPrinter*)
{
    m_shown.push_back({QStringLiteral("print setup"), {}});
    return next(m_prints, QStringLiteral("print setup")).value_or(false);
}

bool ScriptedDialogs::printPreview(QWidget*, QPrinter* printer,
                                   const std::function<void(QPrinter*)>& paint)
{
    m_shown.push_back({QStringLiteral("print preview"), {}});
    if (next(m_prints, QStringLiteral("print preview")).value_or(false)) {
        paint(printer);
        return true;
    }
    return false;
}

int ScriptedDialogs::exec(QDialog* dialog)
{
    m_shown.push_back({QStringLiteral("dialog"), dialog->windowTitle()});
    auto handler = next(m_execs, QStringLiteral("dialog: ") + dialog->windowTitle());
    return handler ? (*handler)(dialog) : int(QDialog::Rejected);
}

} // namespace kestrum::test
