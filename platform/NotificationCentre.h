// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QObject>
#include <QString>

namespace lapsa {

/// The content of a notification. All texts are plain: markup is shown, not interpreted.
struct NotificationRequest
{
    /// Chosen by the caller: a request replaces an earlier one with the same identifier that is still shown.
    QString identifier;
    QString title;
    QString body;
    /// The label of the only visible button. It does the same as a click on the notification, because some servers
    /// merely close a notification when its body is clicked.
    QString actionLabel;
    /// Returned to the caller when the user responds.
    QHash<QString, QString> userInfo;
};

/// The desktop's notifications. Failures are not reported: without a notification server, requests are dropped.
class NotificationCentre : public QObject
{
    Q_OBJECT

public:
    /// Asks once for permission to alert with sound, on desktops that require it. The answer is not reported.
    virtual void requestAuthorization() = 0;

    /// Shows a notification at once, with the desktop's default sound.
    virtual void add(const NotificationRequest& request) = 0;

signals:
    /// The user clicked a notification posted by this process, or its button.
    void responseReceived(const QHash<QString, QString>& userInfo);
};

} // namespace lapsa
