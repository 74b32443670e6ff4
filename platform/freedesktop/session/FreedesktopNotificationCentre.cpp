// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreedesktopNotificationCentre.h"

#include "NotificationServer.h"

namespace lapsa {

FreedesktopNotificationCentre::FreedesktopNotificationCentre(const ProgramIdentity& identity)
    : m_server(std::make_unique<NotificationServer>(identity))
{
    connect(m_server.get(), &NotificationServer::responseReceived, this,
            &FreedesktopNotificationCentre::responseReceived);
}

FreedesktopNotificationCentre::~FreedesktopNotificationCentre() = default;

void FreedesktopNotificationCentre::requestAuthorization()
{
    // No permission is needed here; the call starts an on-demand server early, so that the first warning does not have
    // to wait for it.
    m_server->askCapabilities();
}

void FreedesktopNotificationCentre::add(const NotificationRequest& request)
{
    m_server->add(request);
}

} // namespace lapsa
