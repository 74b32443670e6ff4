// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "NotificationService.h"

#include "LapsaItem.h"
#include "Localized.h"
#include "NotificationCentre.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString itemKey = u"itemId"_s;
/// A JSON array: an id in an edited list may contain any characters.
const QString itemsKey = u"itemIds"_s;
constexpr QStringView nameMark = u"%@";
constexpr QStringView numberMark = u"%d";

/// Fills in the placeholders of the format in one pass: a placeholder inside the name stays part of the name.
QString filled(const QString& format, const QString& name, std::int64_t number)
{
    QString text;
    for (qsizetype i = 0; i < format.size();) {
        const QStringView rest = QStringView(format).sliced(i);
        if (rest.startsWith(nameMark)) {
            text += name;
            i += nameMark.size();
        } else if (rest.startsWith(numberMark)) {
            text += QString::number(number);
            i += numberMark.size();
        } else {
            text += rest.front();
            ++i;
        }
    }
    return text;
}

/// Unlike the text for one file, this one has a singular.
QString jointBody(qsizetype count, std::int64_t minutes)
{
    const QString files =
        count == 1 ? Localized::text(u"1 more file will self-destruct"_s, u"Un altro file verrà eliminato"_s)
                   : Localized::text(u"%1 more files will self-destruct"_s, u"Altri %1 file verranno eliminati"_s)
                         .arg(Localized::number(count));
    const QString time =
        minutes == 1 ? Localized::text(u"in 1 minute."_s, u"tra 1 minuto."_s)
                     : Localized::text(u"in %1 minutes."_s, u"tra %1 minuti."_s).arg(Localized::number(minutes));
    return files + u' ' + time;
}

} // namespace

NotificationService::NotificationService(NotificationCentre& centre)
    : m_centre(centre)
{}

void NotificationService::requestAuthorization()
{
    m_centre.requestAuthorization();
}

void NotificationService::sendWarning(const LapsaItem& item, std::int64_t minutes)
{
    m_centre.add({
        .identifier = "lapsa-warning-"_L1 + item.id,
        .title = Localized::notificationTitle(),
        .body = filled(Localized::notificationBody(), item.displayName, minutes),
        .actionLabel = Localized::text(u"Lock"_s, u"Blocca"_s),
        .userInfo = {{itemKey, item.id}},
    });
}

void NotificationService::sendJointWarning(const QList<LapsaItem>& items, std::int64_t minutes)
{
    QJsonArray ids;
    for (const LapsaItem& item : items) {
        ids.push_back(item.id);
    }
    m_centre.add({
        // A separate one for each set: a later pass's warning must not replace this one, whose files it does not list.
        .identifier = "lapsa-warnings-"_L1 + items.first().id,
        .title = Localized::notificationTitle(),
        .body = jointBody(items.size(), minutes),
        .actionLabel = Localized::text(u"Lock all"_s, u"Blocca tutti"_s),
        .userInfo = {{itemsKey, QString::fromUtf8(QJsonDocument(ids).toJson(QJsonDocument::Compact))}},
    });
}

QStringList NotificationService::itemsOf(const QHash<QString, QString>& userInfo)
{
    QStringList ids;
    if (const auto id = userInfo.constFind(itemKey); id != userInfo.cend()) {
        ids.push_back(*id);
    }
    for (const auto& id : QJsonDocument::fromJson(userInfo.value(itemsKey).toUtf8()).array()) {
        ids.push_back(id.toString());
    }
    return ids;
}

} // namespace lapsa
