// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileSystem.h"

#include "AtPath.h"
#include "FileDescriptor.h"
#include "FileUri.h"

#include <QUrl>

#include <fcntl.h>
#include <sys/stat.h>

#include <climits>
#include <cstdlib>
#include <memory>

namespace lapsa::fileSystem {

namespace {

/// Whether lexicallyClean() has nothing to do.
bool isLexicallyClean(QStringView path)
{
    return (path.size() == 1 || !path.endsWith(u'/')) && !path.endsWith(u"/.") && !path.endsWith(u"/..") &&
           !path.contains(u"//") && !path.contains(u"/./") && !path.contains(u"/../");
}

/// Removes "." and "..", doubled and trailing slashes. Does not look at links.
QByteArray lexicallyClean(const QByteArray& path)
{
    QList<QByteArray> steps;
    for (const QByteArray& step : path.split('/')) {
        if (step == "..") {
            if (!steps.isEmpty()) {
                steps.removeLast();
            }
        } else if (!step.isEmpty() && step != ".") {
            steps.push_back(step);
        }
    }
    return '/' + steps.join('/');
}

Result<QByteArray> resolved(const QString& path)
{
    const Result<QByteArray> bytes = pathBytes(path);
    if (!bytes) {
        return bytes.error();
    }
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(bytes.value().constData(), nullptr), &std::free);
    if (!real) {
        return FileError::fromErrno(errno);
    }
    return QByteArray(real.get());
}

int makeFolder(const QByteArray& path, mode_t mode)
{
    const int error = errorOf([&] { return ::mkdir(path.constData(), mode); });
    if (error == 0 && mode == S_IRWXU) {
        ::chmod(path.constData(), mode); // restores what the umask removed
    }
    if (error == 0 || error == ENOENT) {
        return error;
    }
    // It already exists, or nothing may be created there: what counts is whether it is a folder.
    struct stat status = {};
    return ::stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode) ? 0 : error;
}

/// Reads the rest of an open file that reports `expected` bytes: it may be growing, or not report its size.
Result<QByteArray> readToEnd(int file, off_t expected)
{
    constexpr qsizetype largest = INT_MAX;
    constexpr qsizetype step = 16384;
    if (expected >= largest) {
        return FileError::fromErrno(EFBIG);
    }
    // More than expected, to see the end without growing the buffer, and enough for the padding that a parser wants
    // after a text: without it, the parser would copy the text.
    constexpr qsizetype spare = 64;
    QByteArray content(qsizetype(expected) + spare, Qt::Uninitialized);
    qsizetype length = 0;
    while (length < largest) {
        if (length == content.size()) {
            content.resize(length + step);
        }
        const ssize_t got =
            retrying([&] { return ::read(file, content.data() + length, size_t(content.size() - length)); });
        if (got < 0) {
            return FileError::fromErrno(errno);
        }
        if (got == 0) {
            content.truncate(length);
            return content;
        }
        length += got;
    }
    return FileError::fromErrno(EFBIG);
}

} // namespace

std::optional<QString> standardizedPath(const QUrl& url)
{
    if (!url.isLocalFile() || !isThisMachine(url.host())) {
        return std::nullopt;
    }
    QString decoded = url.path(QUrl::FullyDecoded);
    if (decoded.startsWith(u'/') && !decoded.contains(QChar::ReplacementCharacter) && !decoded.contains(QChar::Null) &&
        isLexicallyClean(decoded)) {
        return decoded;
    }
    // Decoded as bytes: Qt's own decoding puts a replacement character, and so another name, for invalid UTF-8.
    const QByteArray bytes = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    if (!bytes.startsWith('/') || bytes.contains('\0') || !QUtf8StringView(bytes.data(), bytes.size()).isValidUtf8()) {
        return std::nullopt;
    }
    return QString::fromUtf8(lexicallyClean(bytes));
}

std::optional<QString> standardizedPath(const QString& path)
{
    if (!path.startsWith(u'/') || path.contains(QChar::Null) || !path.isValidUtf16()) {
        return std::nullopt;
    }
    return isLexicallyClean(path) ? path : QString::fromUtf8(lexicallyClean(path.toUtf8()));
}

Status status(const QString& path)
{
    const Result<QByteArray> bytes = pathBytes(path);
    struct statx status = {};
    // Looks as stat(2) does, which does not report mount points: like stat(2), it triggers no automount.
    const auto look = [&] {
        return ::statx(AT_FDCWD, bytes.value().constData(), AT_NO_AUTOMOUNT, STATX_TYPE, &status);
    };
    if (!bytes || retrying(look) != 0) {
        return {};
    }
    return {.exists = true, .isDirectory = isFolder(status), .isMountPoint = isMountPoint(status)};
}

bool exists(const QString& path)
{
    return status(path).exists;
}

bool isDirectory(const QString& path)
{
    return status(path).isDirectory;
}

bool isInside(const QString& path, const QString& folder)
{
    const Result<QByteArray> inner = resolved(path);
    const Result<QByteArray> outer = resolved(folder);
    if (!inner || !outer) {
        return false;
    }
    return inner.value() == outer.value() ||
           inner.value().startsWith(outer.value().endsWith('/') ? outer.value() : outer.value() + '/');
}

Result<void> createDirectory(const QString& path, Access access)
{
    const Result<QByteArray> bytes = pathBytes(path);
    if (!bytes) {
        return bytes.error();
    }
    const QByteArray& whole = bytes.value();
    const mode_t mode = access == Access::OwnerOnly ? 0700 : 0777;
    int error = makeFolder(whole, mode);
    for (qsizetype slash = whole.indexOf('/', 1); error == ENOENT && slash > 0; slash = whole.indexOf('/', slash + 1)) {
        if (const int above = makeFolder(whole.first(slash), mode)) {
            return FileError::fromErrno(above);
        }
    }
    if (error == ENOENT) {
        error = makeFolder(whole, mode);
    }
    return error == 0 ? Result<void>() : FileError::fromErrno(error);
}

Result<QByteArray> read(const QString& path)
{
    const Result<QByteArray> bytes = pathBytes(path);
    if (!bytes) {
        return bytes.error();
    }
    // Must not block: a pipe planted under this name would stop the program for good.
    const FileDescriptor file(
        retrying([&] { return ::open(bytes.value().constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0) {
        return FileError::fromErrno(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return FileError::fromErrno(S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    }
    return readToEnd(file.get(), status.st_size);
}

} // namespace lapsa::fileSystem
