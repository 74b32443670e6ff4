// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTree.h"

#include <QCryptographicHash>
#include <QFile>
#include <QHash>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <climits>

namespace lapsa::test {

namespace {

QByteArray digestOf(const QByteArray& path)
{
    const int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    QByteArray buffer(65536, Qt::Uninitialized);
    for (ssize_t got = ::read(file, buffer.data(), size_t(buffer.size())); got > 0;
         got = ::read(file, buffer.data(), size_t(buffer.size()))) {
        hash.addData(QByteArrayView(buffer).first(got));
    }
    ::close(file);
    return hash.result().toHex();
}

QByteArray attributesOf(const QByteArray& path)
{
    QByteArray names(65536, Qt::Uninitialized);
    names.truncate(std::max<ssize_t>(0, ::llistxattr(path.constData(), names.data(), size_t(names.size()))));
    QList<QByteArray> lines;
    for (const QByteArray& name : names.split('\0')) {
        QByteArray value(65536, Qt::Uninitialized);
        const ssize_t length = ::lgetxattr(path.constData(), name.constData(), value.data(), size_t(value.size()));
        if (!name.isEmpty() && length >= 0) {
            lines.push_back(name + '=' + value.first(length).toHex());
        }
    }
    std::ranges::sort(lines);
    return lines.join(',');
}

QByteArray linkTarget(const QByteArray& path)
{
    QByteArray target(PATH_MAX, Qt::Uninitialized);
    return target.first(std::max<ssize_t>(0, ::readlink(path.constData(), target.data(), size_t(target.size()))));
}

class TreeLister final
{
public:
    void add(const QByteArray& path, const QByteArray& relative)
    {
        struct stat status = {};
        if (::lstat(path.constData(), &status) != 0) {
            return;
        }
        QByteArray line = relative + " mode " + QByteArray::number(status.st_mode, 8) + " owner " +
                          QByteArray::number(status.st_uid) + ':' + QByteArray::number(status.st_gid) + " changed " +
                          QByteArray::number(qlonglong(status.st_mtim.tv_sec)) + '.' +
                          QByteArray::number(qlonglong(status.st_mtim.tv_nsec)) + ' ' + attributesOf(path);
        if (S_ISREG(status.st_mode)) {
            line += " size " + QByteArray::number(qlonglong(status.st_size)) + ' ' + digestOf(path);
        } else if (S_ISLNK(status.st_mode)) {
            line += " to " + linkTarget(path);
        } else if (S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode)) {
            line += " device " + QByteArray::number(qulonglong(status.st_rdev));
        }
        if (!S_ISDIR(status.st_mode) && status.st_nlink > 1) {
            line += " is " + m_firstNames.value(status.st_ino, relative);
            m_firstNames.insert(status.st_ino, m_firstNames.value(status.st_ino, relative));
        }
        lines.push_back(line);
        if (S_ISDIR(status.st_mode)) {
            for (const QByteArray& name : namesIn(path)) {
                add(path + '/' + name, relative + '/' + name);
            }
        }
    }

    static QList<QByteArray> namesIn(const QByteArray& path)
    {
        QList<QByteArray> names;
        if (DIR* const folder = ::opendir(path.constData())) {
            for (const dirent* entry = ::readdir(folder); entry != nullptr; entry = ::readdir(folder)) {
                if (const QByteArray name = entry->d_name; name != "." && name != "..") {
                    names.push_back(name);
                }
            }
            ::closedir(folder);
        }
        std::ranges::sort(names);
        return names;
    }

    QList<QByteArray> lines;

private:
    QHash<ino_t, QByteArray> m_firstNames;
};

} // namespace

QList<QByteArray> treeAt(const QString& path)
{
    TreeLister lister;
    lister.add(path.toUtf8(), ".");
    return lister.lines;
}

QList<QByteArray> rawNames(const QString& folder)
{
    return TreeLister::namesIn(folder.toUtf8());
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void makeRawFile(const QByteArray& path, const QByteArray& content)
{
    const int file = ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (file < 0 || ::write(file, content.constData(), size_t(content.size())) != content.size()) {
        qFatal("cannot write %s", path.constData());
    }
    ::close(file);
}

} // namespace lapsa::test
