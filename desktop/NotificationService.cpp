// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "NotificationService.h"

#include "LapsaItem.h"
#include "Localized.h"
#include "NotificationCentre.h"

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView nameMark = u"%@";
constexpr QStringView numberMark = u"%d";

/// The format with its marks filled in, in one pass: a mark inside the name is part of the name.
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
        .userInfo = {{u"itemId"_s, item.id}},
    });
}

} // namespace lapsa
