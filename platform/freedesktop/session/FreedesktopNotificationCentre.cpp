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
    // There is no permission to ask for here; the question wakes a server that is started on demand, so that the first
    // warning does not have to.
    m_server->askCapabilities();
}

void FreedesktopNotificationCentre::add(const NotificationRequest& request)
{
    m_server->add(request);
}

} // namespace lapsa
