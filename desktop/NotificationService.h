// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ExpiryWarnings.h"

#include <QHash>
#include <QString>
#include <QStringList>

namespace lapsa {

class NotificationCentre;

/// Builds and posts the warnings. Keeps nothing: whether a warning was shown is not known here.
class NotificationService final : public ExpiryWarnings
{
public:
    explicit NotificationService(NotificationCentre& centre);

    /// Asks once for permission to alert with sound. Warnings are posted whatever the answer.
    void requestAuthorization();

    /// In the language of this moment. A later warning for the same item takes the place of an earlier one. Never in
    /// the singular, on purpose: one minute reads "1 minutes".
    void sendWarning(const LapsaItem& item, std::int64_t minutes) override;
    /// Says how many more there are, and locks them all when it is answered.
    void sendJointWarning(const QList<LapsaItem>& items, std::int64_t minutes) override;

    /// The items that a warning was about, as the user's response to it hands them back; none where it names none.
    [[nodiscard]] static QStringList itemsOf(const QHash<QString, QString>& userInfo);

private:
    NotificationCentre& m_centre;
};

} // namespace lapsa
