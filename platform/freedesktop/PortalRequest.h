// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace lapsa {

/// A method of the desktop portal that answers later, by a signal of a request object
/// (`org.freedesktop.portal.Request`). One object for one call; destroying it before the answer withdraws the request.
class PortalRequest final : public QObject
{
    Q_OBJECT

public:
    /// The results; nothing when the portal or the user refused, or nobody was there to ask.
    using Answer = std::optional<QVariantMap>;

    /// Sends `call`, to which the options are added as the last argument. `answered` may destroy this object.
    PortalRequest(QDBusMessage call, QVariantMap options, std::function<void(const Answer&)> answered);
    ~PortalRequest() override;

    [[nodiscard]] bool pending() const { return m_pending; }

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
};

} // namespace lapsa
