// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ExpiryWarnings.h"

#include <QHash>
#include <QString>
#include <QStringList>

namespace lapsa {

class NotificationCentre;

/// Builds and posts the warnings. Stateless: does not know whether a warning was shown.
class NotificationService final : public ExpiryWarnings
{
public:
    explicit NotificationService(NotificationCentre& centre);

    /// Asks once for permission to alert with sound. Warnings are posted whatever the answer.
    void requestAuthorization();

    /// In the current language. A later warning for the same item replaces an earlier one. Never in the singular, on
    /// purpose: one minute reads "1 minutes".
    void sendWarning(const LapsaItem& item, std::int64_t minutes) override;
    /// Says how many more there are; the user's response locks them all.
    void sendJointWarning(const QList<LapsaItem>& items, std::int64_t minutes) override;

    /// The ids of the items of a warning, from the data that the user's response returns; empty if it contains none.
    [[nodiscard]] static QStringList itemsOf(const QHash<QString, QString>& userInfo);

private:
    NotificationCentre& m_centre;
};

} // namespace lapsa
