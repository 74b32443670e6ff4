// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Inventory.h"

#include "FileTree.h"

#include <QCryptographicHash>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <climits>

namespace lapsa::test {

namespace {

QByteArray contentKey(const QByteArray& path)
{
    const int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    QByteArray buffer(1 << 18, Qt::Uninitialized);
    for (ssize_t got = 1; got > 0;) {
        got = ::read(file, buffer.data(), std::size_t(buffer.size()));
        hash.addData(QByteArrayView(buffer).first(std::max<ssize_t>(got, 0)));
    }
    ::close(file);
    return "file " + hash.result().toHex();
}

QByteArray keyOf(const QByteArray& path, const struct stat& status)
{
    if (S_ISREG(status.st_mode)) {
        return contentKey(path);
    }
    if (S_ISLNK(status.st_mode)) {
        QByteArray target(PATH_MAX, Qt::Uninitialized);
        target.truncate(std::max<ssize_t>(0, ::readlink(path.constData(), target.data(), std::size_t(target.size()))));
        return "link " + target;
    }
    return "special " + QByteArray::number(status.st_mode & S_IFMT, 8) + ' ' +
           QByteArray::number(qulonglong(status.st_rdev));
}

QByteArray attributesOf(const QByteArray& path, const struct stat& status)
{
    QByteArray value(256, Qt::Uninitialized);
    const ssize_t length = ::lgetxattr(path.constData(), "user.lapsa", value.data(), std::size_t(value.size()));
    return QByteArray::number(status.st_mode, 8) + ' ' + QByteArray::number(qlonglong(status.st_mtim.tv_sec)) + '.' +
           QByteArray::number(qlonglong(status.st_mtim.tv_nsec)) + ' ' + value.first(std::max<ssize_t>(0, length));
}

} // namespace

std::vector<FileFound> filesBelow(const QByteArray& folder)
{
    std::vector<FileFound> files;
    std::vector<QByteArray> folders = {folder};
    while (!folders.empty()) {
        const QByteArray current = std::move(folders.back());
        folders.pop_back();
        for (const QByteArray& name : rawNames(QString::fromUtf8(current))) {
            const QByteArray path = current + '/' + name;
            struct stat status = {};
            if (::lstat(path.constData(), &status) != 0) {
                continue;
            }
            if (S_ISDIR(status.st_mode)) {
                folders.push_back(path);
            } else {
                files.push_back({.path = path,
                                 .key = keyOf(path, status),
                                 .attributes = attributesOf(path, status),
                                 .marked = ::lgetxattr(path.constData(), "user.lapsa.moving", nullptr, 0) >= 0});
            }
        }
    }
    return files;
}

} // namespace lapsa::test
