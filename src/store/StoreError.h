#pragma once

#include <QString>

#include <stdexcept>

namespace kestrum::store {

// A failure of the project file (engine error, damaged file or column, locked file) that the
// store does not handle itself: it reaches the command that caused it, which tells the user.
class StoreError : public std::runtime_error
{
public:
    explicit StoreError(const QString& message)
        : std::runtime_error(message.toStdString()), m_message(message)
    {}
    const QString& message() const { return m_message; }

private:
    QString m_message;
};

} // namespace kestrum::store
