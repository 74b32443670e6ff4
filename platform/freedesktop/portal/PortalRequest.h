// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <optional>

namespace lapsa {

/// A method of the desktop portal that answers later, through a signal of a request object
/// (`org.freedesktop.portal.Request`). One object per call; destroying it before the answer withdraws the request.
class PortalRequest final : public QObject
{
    Q_OBJECT

public:
    /// The results; nothing if the portal or the user refused, or if there is no portal.
    using Answer = std::optional<QVariantMap>;

    /// How long the bus waits for a service by default.
    static constexpr std::chrono::milliseconds usualPatience{25'000};

    /// Sends `call` with the options as its last argument. `patience` is the time for the portal to accept the request,
    /// not to answer it. `answered` may destroy this object.
    PortalRequest(QDBusMessage call, QVariantMap options, std::function<void(const Answer&)> answered,
                  std::chrono::milliseconds patience = usualPatience);
    ~PortalRequest() override;

    [[nodiscard]] bool pending() const { return m_pending; }

    /// Whether there are no results because the user cancelled. False until the answer arrives.
    [[nodiscard]] bool refusedByUser() const { return m_refusedByUser; }

private slots:
    void responded(uint response, const QVariantMap& results);

private:
    void listenTo(const QString& path);
    void stopListening();
    void replied(const QDBusMessage& reply);
    void finish(const Answer& answer);

    std::function<void(const Answer&)> m_answered;
    QString m_path;
    bool m_pending = true;
    bool m_refusedByUser = false;
};

} // namespace lapsa
