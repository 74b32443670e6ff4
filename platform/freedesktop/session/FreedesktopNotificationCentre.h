// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "NotificationCentre.h"

#include <memory>

namespace lapsa {

class NotificationServer;
struct ProgramIdentity;

/// The session's notification server (`org.freedesktop.Notifications`). No call waits.
class FreedesktopNotificationCentre final : public NotificationCentre
{
    Q_OBJECT

public:
    explicit FreedesktopNotificationCentre(const ProgramIdentity& identity);
    ~FreedesktopNotificationCentre() override;

    void requestAuthorization() override;
    void add(const NotificationRequest& request) override;

private:
    std::unique_ptr<NotificationServer> m_server;
};

} // namespace lapsa
