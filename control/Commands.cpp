// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Commands.h"

#include "FileUri.h"
#include "Listing.h"
#include "Localized.h"
#include "SystemLog.h"

#include <QDir>
#include <QSet>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <optional>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// The absolute path that an argument means, as a path or as a file URI.
QString pathOf(const QString& argument)
{
    const std::optional<QString> path = pathOfFileUri(argument.toUtf8());
    return QDir::cleanPath(QDir::current().absoluteFilePath(path.value_or(argument)));
}

/// Why a file was not put on countdown.
QString reasonOf(const QVariantMap& outcome)
{
    const QString word = outcome[u"outcome"_s].toString();
    if (word == u"missing"_s) {
        return Localized::text(u"there is no such file"_s, u"il file non esiste"_s);
    }
    if (word == u"refused"_s) {
        return Localized::text(u"Lapsa never takes this (%1)"_s, u"Lapsa non lo prende mai (%1)"_s)
            .arg(outcome[u"reason"_s].toString());
    }
    return Localized::text(u"its disk does not answer; Lapsa adds it when it does"_s,
                           u"il suo disco non risponde; Lapsa lo aggiunge quando risponde"_s);
}

/// Why a file was not put back.
QString reasonOfRecord(const QVariantMap& outcome)
{
    const QString word = outcome[u"outcome"_s].toString();
    if (word == u"gone"_s) {
        return Localized::text(u"it is not in Recovery any more"_s, u"non è più nel recupero"_s);
    }
    return word == u"failed"_s ? outcome[u"error"_s].toString()
                               : Localized::text(u"its disk does not answer; Lapsa puts it back when it does"_s,
                                                 u"il suo disco non risponde; Lapsa lo riporta quando risponde"_s);
}

/// Those that an argument can mean: by id, by path, by name.
QList<QVariantMap> meant(const QString& argument, const QList<QVariantMap>& known, const QString& pathKey)
{
    const std::pair<QString, QString> ways[]{// NOLINT(modernize-avoid-c-arrays)
                                             {u"id"_s, argument},
                                             {pathKey, pathOf(argument)},
                                             {u"name"_s, argument}};
    QList<QVariantMap> found;
    for (const auto& way : ways) {
        std::ranges::copy_if(known, std::back_inserter(found), [&way](const QVariantMap& dictionary) {
            return dictionary[way.first].toString() == way.second;
        });
        if (!found.isEmpty()) {
            break;
        }
    }
    return found;
}

} // namespace

Commands::Commands(const CommandLine& line)
    : m_line(line)
{}

Status Commands::run()
{
    using Verb = CommandLine::Verb;
    const bool starts = m_line.verb == Verb::Add || m_line.verb == Verb::PutBack;
    if (!m_client.reach(starts ? LapsaClient::Start::Allowed : LapsaClient::Start::Never)) {
        lapsa::complain(m_client.error());
        return Status::NotRunning;
    }
    switch (m_line.verb) {
    case Verb::Add:
        add();
        break;
    case Verb::List:
    case Verb::Recovered:
        list();
        break;
    case Verb::Lock:
    case Verb::Unlock:
    case Verb::Remove:
        change();
        break;
    case Verb::PutBack:
        putBack();
        break;
    case Verb::Help:
    case Verb::Version:
        break;
    }
    return m_status;
}

void Commands::add()
{
    QStringList paths;
    std::ranges::transform(m_line.names, std::back_inserter(paths), pathOf);
    const std::optional<Dictionaries> outcomes = m_client.add(paths, m_line.minutes);
    if (!outcomes) {
        failed();
        return;
    }
    Dictionaries added;
    for (const QVariantMap& outcome : *outcomes) {
        if (outcome[u"outcome"_s] == u"added"_s) {
            added.push_back(outcome);
        } else {
            complain(outcome[u"path"_s].toString(), reasonOf(outcome));
        }
    }
    print(*outcomes, tableOf(added, u"expires"_s, u"path"_s));
}

void Commands::list()
{
    const bool items = m_line.verb == CommandLine::Verb::List;
    const std::optional<Dictionaries> listed = items ? m_client.items() : m_client.recovered();
    if (!listed) {
        failed();
        return;
    }
    print(*listed, tableOf(*listed, items ? u"expires"_s : u"purge"_s, items ? u"path"_s : u"originalPath"_s));
}

void Commands::change()
{
    using Verb = CommandLine::Verb;
    const std::optional<Dictionaries> items = m_client.items();
    if (!items) {
        failed();
        return;
    }
    Dictionaries changed;
    for (QVariantMap item : named(*items, u"path"_s)) {
        const QString id = item[u"id"_s].toString();
        const bool locks = m_line.verb == Verb::Lock;
        const bool done = m_line.verb == Verb::Remove ? m_client.remove(id) : m_client.lock(id, locks);
        if (!done) {
            complain(item[u"path"_s].toString(), m_client.error());
            continue;
        }
        if (m_line.verb != Verb::Remove) {
            item[u"locked"_s] = locks;
        }
        changed.push_back(item);
    }
    print(changed, {});
}

void Commands::putBack()
{
    const std::optional<Dictionaries> records = m_client.recovered();
    if (!records) {
        failed();
        return;
    }
    const Dictionaries wanted = named(*records, u"originalPath"_s);
    QStringList ids;
    for (const QVariantMap& record : wanted) {
        ids.push_back(record[u"id"_s].toString());
    }
    const std::optional<Dictionaries> outcomes = m_client.putBack(ids);
    if (!outcomes) {
        failed();
        return;
    }
    Dictionaries back;
    for (qsizetype number = 0; number < outcomes->size(); ++number) {
        const QVariantMap& outcome = outcomes->at(number);
        if (outcome[u"outcome"_s] == u"put-back"_s) {
            back.push_back(outcome);
        } else {
            complain(wanted[number][u"originalPath"_s].toString(), reasonOfRecord(outcome));
        }
    }
    print(*outcomes, linesOf(back, u"path"_s));
}

/// What the names mean, each once; complains about names that mean nothing or several things.
Commands::Dictionaries Commands::named(const Dictionaries& known, const QString& pathKey)
{
    Dictionaries all;
    QSet<QString> ids;
    for (const QString& name : m_line.names) {
        const Dictionaries found = meant(name, known, pathKey);
        if (found.size() == 1) {
            const QString id = found.first()[u"id"_s].toString();
            if (!ids.contains(id)) {
                ids.insert(id);
                all.push_back(found.first());
            }
            continue;
        }
        complain(name, found.isEmpty()
                           ? Localized::text(u"there is nothing of this name"_s, u"non c'è nulla con questo nome"_s)
                           : Localized::text(u"several have this name; give the path or the id:"_s,
                                             u"più di uno ha questo nome; indica il percorso o l'id:"_s));
        for (const QVariantMap& one : found) {
            lapsa::complain(u"  "_s + one[u"id"_s].toString() + u"  "_s + one[pathKey].toString());
        }
    }
    return all;
}

void Commands::print(const Dictionaries& dictionaries, const QByteArray& text)
{
    if (!writeOut(m_line.json ? jsonOf(dictionaries) : text)) {
        m_status = Status::NotAllDone;
    }
}

void Commands::complain(const QString& about, const QString& reason)
{
    lapsa::complain(about + u": "_s + reason);
    m_status = Status::NotAllDone;
}

void Commands::failed()
{
    lapsa::complain(m_client.error());
    m_status = Status::NotAllDone;
}

void complain(const QString& text)
{
    const QByteArray line = "lapsactl: " + onOneLine(text).toUtf8() + '\n';
    // There is nowhere else to report a failure.
    static_cast<void>(std::fwrite(line.constData(), 1, std::size_t(line.size()), stderr));
}

bool writeOut(const QByteArray& text)
{
    const auto size = std::size_t(text.size());
    const bool written = std::fwrite(text.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
    if (!written) {
        complain(Localized::text(u"The result cannot be written"_s, u"Il risultato non si può scrivere"_s));
    }
    return written;
}

} // namespace lapsa
