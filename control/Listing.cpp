// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Listing.h"

#include "DurationFormatter.h"
#include "Localized.h"
#include "SystemClock.h"
#include "SystemLog.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <chrono>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// Rounded up: a lifespan is shown as it was given for a minute.
QString timeUntil(qlonglong moment)
{
    const auto now = std::chrono::floor<std::chrono::seconds>(SystemClock().now()).time_since_epoch().count();
    const qlonglong seconds = moment - now;
    if (seconds <= 0) {
        return Localized::text(u"expired"_s, u"scaduto"_s);
    }
    constexpr qlonglong secondsPerMinute = 60;
    return DurationFormatter::compact((seconds + secondsPerMinute - 1) / secondsPerMinute);
}

} // namespace

QByteArray jsonOf(const QList<QVariantMap>& dictionaries)
{
    QJsonArray array;
    for (const QVariantMap& dictionary : dictionaries) {
        array.push_back(QJsonObject::fromVariantMap(dictionary));
    }
    return QJsonDocument(array).toJson(QJsonDocument::Indented);
}

QByteArray tableOf(const QList<QVariantMap>& dictionaries, const QString& timeKey, const QString& pathKey)
{
    const QString lockedWord = Localized::text(u"locked"_s, u"bloccato"_s);
    QStringList times;
    qsizetype width = 0;
    bool anyLocked = false;
    for (const QVariantMap& dictionary : dictionaries) {
        times.push_back(timeUntil(dictionary[timeKey].toLongLong()));
        width = std::max(width, times.constLast().size());
        anyLocked = anyLocked || dictionary[u"locked"_s].toBool();
    }
    QString table;
    for (qsizetype line = 0; line < dictionaries.size(); ++line) {
        const QVariantMap& dictionary = dictionaries[line];
        table += times[line].leftJustified(width) + u"  "_s;
        if (anyLocked) {
            const QString word = dictionary[u"locked"_s].toBool() ? lockedWord : QString();
            table += word.leftJustified(lockedWord.size()) + u"  "_s;
        }
        table += onOneLine(dictionary[pathKey].toString()) + u'\n';
    }
    return table.toUtf8();
}

QByteArray linesOf(const QList<QVariantMap>& dictionaries, const QString& key)
{
    QString lines;
    for (const QVariantMap& dictionary : dictionaries) {
        lines += onOneLine(dictionary[key].toString()) + u'\n';
    }
    return lines.toUtf8();
}

} // namespace lapsa
