// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "KeptFiles.h"

#include "AppPaths.h"
#include "FileBatch.h"
#include "FileName.h"
#include "FileSystem.h"
#include "PutAside.h"
#include "SystemLog.h"

#include <QList>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <tuple>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// The copies of one file, by number.
class Copies
{
public:
    Copies(QString folder, const FileName& name)
        : m_folder(std::move(folder))
        , m_name(name)
    {
        const auto listed = fileSystem::forEachName(m_folder, [this](const QString& found) {
            const FileName parts = FileName::of(found);
            bool isNumber = false;
            const std::int64_t number = parts.base.mid(m_name.base.size() + 1).toLongLong(&isNumber);
            if (isNumber && number > 0 && found == nameOf(number)) {
                m_numbers.push_back(number);
            }
        });
        std::ignore = listed; // the folder may not exist yet
        std::ranges::sort(m_numbers);
    }

    [[nodiscard]] bool lastOneSays(const QByteArray& bytes) const
    {
        const auto last = m_numbers.isEmpty() ? Result<QByteArray>(QByteArray()) : fileSystem::read(newest());
        return last && last.value() == bytes;
    }

    [[nodiscard]] QString newest() const { return pathOf(m_numbers.last()); }

    Result<void> add(const QByteArray& bytes)
    {
        const std::int64_t number = m_numbers.isEmpty() ? 1 : m_numbers.last() + 1;
        auto written = fileSystem::writeAtomically(pathOf(number), bytes);
        if (written) {
            m_numbers.push_back(number);
        }
        return written;
    }

    /// Moves the file itself to become the newest copy.
    Result<void> take(const QString& file)
    {
        const std::int64_t number = m_numbers.isEmpty() ? 1 : m_numbers.last() + 1;
        auto taken = fileSystem::putAside(file, pathOf(number));
        if (taken) {
            m_numbers.push_back(number);
        }
        return taken;
    }

    void removeOldest()
    {
        fileSystem::Batch batch({.folder = AppPaths::applicationSupportDirectory().toLocalFile()});
        while (m_numbers.size() > mostKeptFiles) {
            // One copy too many does no harm: silent on purpose.
            std::ignore = batch.remove(pathOf(m_numbers.takeFirst()));
        }
    }

private:
    [[nodiscard]] QString nameOf(std::int64_t number) const
    {
        return m_name.base + u'-' + QString::number(number) + u'.' + m_name.extension;
    }

    [[nodiscard]] QString pathOf(std::int64_t number) const { return m_folder + u'/' + nameOf(number); }

    QString m_folder;
    FileName m_name;
    /// Ascending.
    QList<std::int64_t> m_numbers;
};

/// The file itself is kept: an expert, or someone with permission to read it, may still recover its content.
void keepUnreadable(const QString& file)
{
    const QString name = lastPathComponent(file);
    Result<void> kept = FileError::fromErrno(ENOENT);
    for (const QString& folder : {AppPaths::keptFilesFolder(), parentPath(file)}) {
        if (folder.isEmpty() || !fileSystem::createDirectory(folder, fileSystem::Access::OwnerOnly)) {
            continue;
        }
        Copies copies(folder, FileName::of(name));
        kept = copies.take(file);
        if (kept) {
            systemLog(u"Lapsa replaces "_s + name + u", a copy is kept: "_s + copies.newest());
            copies.removeOldest();
            return;
        }
    }
    // Something that is not a file is not replaced either.
    if (kept.error().code != EISDIR && kept.error().code != EINVAL) {
        systemLog(u"Lapsa replaces "_s + name + u", no copy is kept: "_s + kept.error().description);
    }
}

} // namespace

void keepCopyOf(const QString& file)
{
    const Result<QByteArray> bytes = fileSystem::read(file);
    const bool isThere = bytes || (bytes.error().code != ENOENT && bytes.error().code != ENOTDIR);
    if (!bytes && isThere) {
        keepUnreadable(file);
        return;
    }
    const QString folder = AppPaths::keptFilesFolder();
    if (!bytes || bytes.value().isEmpty() || folder.isEmpty()) {
        return;
    }
    const QString name = lastPathComponent(file);
    Copies copies(folder, FileName::of(name));
    if (copies.lastOneSays(bytes.value())) {
        systemLog(u"Lapsa replaces "_s + name + u", a copy is kept: "_s + copies.newest());
        return;
    }
    Result<void> kept = fileSystem::createDirectory(folder, fileSystem::Access::OwnerOnly);
    if (kept) {
        kept = copies.add(bytes.value());
    }
    if (!kept) {
        systemLog(u"Lapsa replaces "_s + name + u", no copy is kept: "_s + kept.error().description);
        return;
    }
    copies.removeOldest();
    systemLog(u"Lapsa replaces "_s + name + u", a copy is kept: "_s + copies.newest());
}

} // namespace lapsa
