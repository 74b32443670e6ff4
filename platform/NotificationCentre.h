// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QObject>
#include <QString>

namespace lapsa {

/// What a notification says. All texts are plain: markup in them is shown, not interpreted.
struct NotificationRequest
{
    /// Chosen by the caller: a later request with the same identifier takes the place of an earlier one still shown.
    QString identifier;
    QString title;
    QString body;
    /// The label of the one visible button. It does what a click on the notification does: some notification servers
    /// only close a notification whose body is clicked.
    QString actionLabel;
    /// Handed back when the user responds.
    QHash<QString, QString> userInfo;
};

/// The desktop's notifications. Nothing here reports a failure: without a notification server requests are dropped.
class NotificationCentre : public QObject
{
    Q_OBJECT

public:
    /// Asks once for permission to alert with sound, where the desktop has such a question. The answer is not told.
    virtual void requestAuthorization() = 0;

    /// Shows a notification at once, with the desktop's default sound.
    virtual void add(const NotificationRequest& request) = 0;

signals:
    /// The user clicked a notification, or its button, that this process posted.
    void responseReceived(const QHash<QString, QString>& userInfo);
};

} // namespace lapsa
