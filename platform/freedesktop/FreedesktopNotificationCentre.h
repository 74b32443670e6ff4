// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "NotificationCentre.h"

#include <memory>

namespace lapsa {

/// The session's notification server (`org.freedesktop.Notifications`). Everything is asked for without waiting.
class FreedesktopNotificationCentre final : public NotificationCentre
{
    Q_OBJECT

public:
    FreedesktopNotificationCentre();
    ~FreedesktopNotificationCentre() override;

    void requestAuthorization() override;
    void add(const NotificationRequest& request) override;

private:
    class Server;

    std::unique_ptr<Server> m_server;
};

} // namespace lapsa
