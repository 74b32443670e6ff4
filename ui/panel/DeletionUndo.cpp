// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DeletionUndo.h"

#include "FileName.h"
#include "Localized.h"
#include "TextStyle.h"

#include <QPointer>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// The message has two lines, beside the link.
constexpr qsizetype longestName = 32;
constexpr qsizetype longestOfTwo = 20;

/// A long name loses its middle.
QString shortened(const QString& name, qsizetype longest)
{
    const QString line = singleLine(name);
    if (line.size() <= longest) {
        return line;
    }
    const qsizetype end = longest / 3;
    return line.first(longest - end).trimmed() + u'…' + line.last(end).trimmed();
}

/// The names of some deletions; empty for none.
QString namesOf(const QStringList& names)
{
    if (names.size() < 2) {
        return names.isEmpty() ? QString() : shortened(names.first(), longestName);
    }
    const QString first = shortened(names.first(), longestOfTwo);
    if (names.size() == 2) {
        return Localized::text(u"%1 and %2"_s, u"%1 e %2"_s).arg(first, shortened(names.last(), longestOfTwo));
    }
    return Localized::text(u"%1 and %2 others"_s, u"%1 e altri %2 elementi"_s)
        .arg(first, Localized::number(names.size() - 1));
}

QString sentence(const QStringList& names, const QString& one, const QString& several)
{
    return (names.size() == 1 ? one : several).arg(namesOf(names));
}

} // namespace

/// What became of one undo.
struct DeletionUndo::Outcome
{
    qsizetype waitingFor = 0;
    /// The old and the new name of what is not under its own name.
    std::optional<std::pair<QString, QString>> renamed = std::nullopt;
    QStringList failed = {};
    QString reason = {};

    /// An empty path means that it failed.
    void note(const LapsaItem& item, const QString& path, const QString& error)
    {
        --waitingFor;
        if (path.isEmpty()) {
            failed.push_back(item.displayName);
            reason = error;
        } else if (path != item.path) {
            renamed = {item.displayName, lastPathComponent(path)};
        }
    }

    /// What the user has to know, if anything.
    [[nodiscard]] std::optional<QString> message() const
    {
        if (!failed.isEmpty()) {
            return Localized::text(u"%1 could not be put back: %2"_s, u"Impossibile ripristinare %1: %2"_s)
                .arg(namesOf(failed), reason);
        }
        if (renamed) {
            return Localized::text(u"%1 is back as %2."_s, u"%1 è tornato come %2."_s)
                .arg(shortened(renamed->first, longestOfTwo), shortened(renamed->second, longestOfTwo));
        }
        return std::nullopt;
    }
};

DeletionUndo::DeletionUndo(LapsaStore& store, QObject* parent)
    : QObject(parent)
    , m_store(store)
{}

void DeletionUndo::offer(const LapsaStore::Deletion& deletion)
{
    if (deletion.record.isNull() && !deletion.trashed) {
        return;
    }
    if (!isOffered()) {
        m_deletions.clear();
    }
    m_deletions.push_back(deletion);
    m_text = offerText();
    m_store.setLastMessage(m_text);
}

bool DeletionUndo::isOffered() const
{
    return !m_deletions.isEmpty() && m_store.lastMessage() == m_text;
}

QString DeletionUndo::offerText() const
{
    QStringList recovered;
    QStringList trashed;
    for (const LapsaStore::Deletion& deletion : m_deletions) {
        (deletion.trashed ? trashed : recovered).push_back(deletion.item.displayName);
    }
    QStringList sentences;
    if (!recovered.isEmpty()) {
        sentences += sentence(recovered, Localized::text(u"%1 is in Recovery."_s, u"%1 è in Recupero."_s),
                              Localized::text(u"%1 are in Recovery."_s, u"%1 sono in Recupero."_s));
    }
    if (!trashed.isEmpty()) {
        sentences += sentence(trashed, Localized::text(u"%1 is in the Trash."_s, u"%1 è nel Cestino."_s),
                              Localized::text(u"%1 are in the Trash."_s, u"%1 sono nel Cestino."_s));
    }
    return sentences.join(u' ');
}

void DeletionUndo::undo()
{
    if (isOffered()) {
        m_store.setLastMessage({});
        putBack(std::exchange(m_deletions, {}));
    }
}

void DeletionUndo::putBack(const QList<LapsaStore::Deletion>& deletions)
{
    const auto outcome = std::make_shared<Outcome>(Outcome{.waitingFor = deletions.size()});
    for (const LapsaStore::Deletion& deletion : deletions) {
        const auto settled = [outcome, item = deletion.item, store = QPointer(&m_store)](const QString& path,
                                                                                         const QString& error) {
            outcome->note(item, path, error);
            if (store && outcome->waitingFor == 0 && outcome->message()) {
                store->setLastMessage(outcome->message());
            }
        };
        if (deletion.trashed) {
            m_store.takeBackFromTrash(deletion, [settled](const Result<QString>& path) {
                settled(path ? path.value() : QString(), path ? QString() : path.error().description);
            });
            continue;
        }
        m_store.putBack({deletion.record}, [settled](const QList<RecoveryResult>& results) {
            const RecoveryResult result =
                results.isEmpty() ? RecoveryResult{.id = {}, .copyGone = true} : results.first();
            const QString gone = Localized::text(u"it is not in Recovery any more"_s, u"non è più in Recupero"_s);
            settled(result.path, result.error ? result.error->description : gone);
        });
    }
}

} // namespace lapsa
