// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreeNames.h"

#include "FileName.h"
#include "FileSystem.h"
#include "RecoveryNames.h"

namespace lapsa {

namespace {

QString joined(const QString& folder, const QString& name)
{
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

/// The size of a text in UTF-8 bytes. An unpaired surrogate cannot be encoded and counts as one byte: Qt versions treat
/// it differently, and no file name can contain it.
qsizetype utf8Size(QStringView text)
{
    qsizetype bytes = 0;
    for (qsizetype index = 0; index < text.size(); ++index) {
        const QChar unit = text[index];
        if (unit.isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate()) {
            bytes += 4;
            ++index;
        } else if (unit.unicode() < 0x80 || unit.isSurrogate()) {
            bytes += 1;
        } else {
            bytes += unit.unicode() < 0x800 ? 2 : 3;
        }
    }
    return bytes;
}

/// The longest prefix of `text` that takes at most `bytes` bytes of UTF-8, without splitting a character.
QString shortened(QString text, qsizetype bytes)
{
    // Each UTF-16 unit takes at least a byte. The rest, perhaps very long in an edited file, is not examined.
    text.truncate(bytes + 1);
    qsizetype length = utf8Size(text);
    while (length > bytes) {
        const bool pair = text.size() > 1 && text.back().isLowSurrogate() && text.at(text.size() - 2).isHighSurrogate();
        const qsizetype units = pair ? 2 : 1;
        length -= utf8Size(QStringView(text).last(units));
        text.chop(units);
    }
    return text;
}

} // namespace

QString fileNameVariant(const QString& name, std::int64_t number)
{
    if (number == 0 && utf8Size(name) <= maxFileNameBytes) {
        return name;
    }
    const FileName parts = FileName::of(name);
    const QString mark = number == 0 ? QString() : u'-' + QString::number(number);
    const QString ending = parts.extension.isEmpty() ? mark : mark + u'.' + parts.extension;
    const qsizetype room = maxFileNameBytes - utf8Size(ending);
    if (room <= 0) {
        // An extension that leaves no room for the base is not worth keeping.
        return shortened(name, maxFileNameBytes - mark.size()) + mark;
    }
    return shortened(parts.base, room) + ending;
}

QString FreeNames::uniquePath(const QString& path)
{
    const QString folder = parentPath(path);
    const QString name = lastPathComponent(path);
    const QString first = joined(folder, fileNameVariant(name, 0));
    if (!m_folders.contains(folder)) {
        return first; // the move itself will find out whether it is free
    }

    Folder& known = listed(folder);
    const auto taken = [&](const QString& candidate) {
        return known.names ? known.names->contains(candidate) : fileSystem::exists(joined(folder, candidate));
    };
    std::int64_t& number = known.nextVariant[name];
    while (taken(fileNameVariant(name, number))) {
        ++number;
    }
    return joined(folder, fileNameVariant(name, number));
}

bool FreeNames::claim(const QString& proposal) const
{
    return !m_claims || m_claims->claim(lastPathComponent(proposal));
}

void FreeNames::release(const QString& proposal) const
{
    if (m_claims) {
        m_claims->release(lastPathComponent(proposal));
    }
}

void FreeNames::markTaken(const QString& path)
{
    const auto folder = m_folders.find(parentPath(path));
    if (folder != m_folders.end() && folder->names) {
        folder->names->insert(lastPathComponent(path));
    }
}

void FreeNames::reject(const QString& wanted, const QString& proposal)
{
    Folder& known = listed(parentPath(wanted));
    if (known.names) {
        known.names->insert(lastPathComponent(proposal));
    } else {
        ++known.nextVariant[lastPathComponent(wanted)];
    }
}

FreeNames::Folder& FreeNames::listed(const QString& folder)
{
    const auto known = m_folders.find(folder);
    if (known != m_folders.end()) {
        return *known;
    }
    QSet<QString> names;
    const auto listing = fileSystem::forEachName(folder, [&names](const QString& name) { names.insert(name); });
    return *m_folders.insert(
        folder, Folder{.names = listing ? std::optional(std::move(names)) : std::nullopt, .nextVariant = {}});
}

} // namespace lapsa
