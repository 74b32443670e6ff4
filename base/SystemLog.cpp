// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SystemLog.h"

#include "FileDescriptor.h"

#include <QByteArray>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// Characters that change the text direction or join their neighbours: they can make a line read as something else.
bool disguises(char32_t c)
{
    return c == 0x200E || c == 0x200F || c == 0x061C || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

bool breaksTheLine(char32_t c)
{
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029;
}

QString escaped(char32_t c)
{
    switch (c) {
    case '\n':
        return u"\\n"_s;
    case '\t':
        return u"\\t"_s;
    default:
        return c <= 0xFF ? u"\\x"_s + QString::number(uint(c), 16).rightJustified(2, u'0')
                         : u"\\u{"_s + QString::number(uint(c), 16).toUpper() + u'}';
    }
}

/// Whether this is half of a surrogate pair without the other half: it has no UTF-8 form, and Qt's replacement for it
/// differs between versions.
bool isHalfAlone(QStringView text, qsizetype index)
{
    const QChar c = text[index];
    if (c.isHighSurrogate()) {
        return index + 1 == text.size() || !text[index + 1].isLowSurrogate();
    }
    return c.isLowSurrogate() && (index == 0 || !text[index - 1].isHighSurrogate());
}

/// Standard error without waiting. Opens a pipe or a terminal again for that: otherwise the flag would affect every
/// process that shares the descriptor.
class ErrorStream final
{
public:
    ErrorStream()
    {
        struct stat status = {};
        const bool known = ::fstat(STDERR_FILENO, &status) == 0;
        m_socket = known && S_ISSOCK(status.st_mode);
        if (known && (S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode))) {
            m_own = FileDescriptor(::open("/proc/self/fd/2", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        }
    }

    /// Returns what write(2) returns.
    [[nodiscard]] ssize_t write(QByteArrayView bytes) const
    {
        const auto size = std::size_t(bytes.size());
        if (m_socket) {
            return ::send(STDERR_FILENO, bytes.data(), size, MSG_DONTWAIT | MSG_NOSIGNAL);
        }
        if (m_own) {
            return ::write(m_own.get(), bytes.data(), size);
        }
        // At most as much as a pipe accepts at once whenever it is writable.
        pollfd writable{.fd = STDERR_FILENO, .events = POLLOUT, .revents = 0};
        return ::poll(&writable, 1, 0) == 1
                   ? ::write(STDERR_FILENO, bytes.data(), std::min<std::size_t>(size, PIPE_BUF))
                   : -1;
    }

private:
    bool m_socket = false;
    FileDescriptor m_own;
};

} // namespace

QString onOneLine(const QString& text)
{
    QString line;
    line.reserve(text.size() + 1);
    for (qsizetype index = 0; index < text.size(); ++index) {
        const QChar c = text[index];
        // All of these are in the basic plane, so the two halves of a surrogate pair stay together.
        if (breaksTheLine(c.unicode()) || disguises(c.unicode())) {
            line += escaped(c.unicode());
        } else {
            line += isHalfAlone(text, index) ? QChar(u'?') : c;
        }
    }
    return line;
}

void systemLog(const QString& text)
{
    // In one call if possible, so that lines of several processes do not mix. The part that cannot be written now is
    // lost: there is nowhere else to report it, and work on files must not wait for the reader of the log.
    const QByteArray bytes = onOneLine(text).toUtf8() + '\n';
    const ErrorStream stream;
    QByteArrayView rest = bytes;
    while (!rest.isEmpty()) {
        errno = 0;
        const ssize_t written = stream.write(rest);
        if (written < 0 && errno != EINTR) {
            return;
        }
        rest = rest.sliced(written < 0 ? 0 : written);
    }
}

} // namespace lapsa
