// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PortalFolderPicker.h"

#include "FileUri.h"
#include "PortalRequest.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QFile>
#include <QFileInfo>
#include <QObject>

#include <chrono>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.FileChooser"_s;

/// The first portal version with `directory`. Older ones would offer files.
constexpr uint versionWithFolders = 3;
/// How long a portal may take to start and to accept the question; the user's answer has no time limit.
constexpr std::chrono::milliseconds patience{5000};

/// The first of the returned URIs that is a folder on this machine.
FolderPicker::Answer folderOf(const QVariantMap& results)
{
    for (const QString& uri : results[u"uris"_s].toStringList()) {
        const std::optional<QString> folder = pathOfFileUri(uri.toUtf8());
        if (folder && QFileInfo(*folder).isDir()) {
            return QUrl::fromLocalFile(*folder);
        }
    }
    return FolderPicker::Cancelled();
}

/// One dialog: asks for the portal's version, then for the dialog, then waits for the choice.
class PortalFolderQuestion final : public QObject, public FolderQuestion
{
    Q_OBJECT

public:
    PortalFolderQuestion(const FolderPicker::Question& question, QString window,
                         std::function<void(const FolderPicker::Answer&)> answered)
        : m_question(question)
        , m_window(std::move(window))
        , m_answered(std::move(answered))
        , m_watcher(service, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForUnregistration)
    {
        connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this,
                [this] { finish(FolderPicker::Unavailable()); });
        askForVersion();
    }

    PortalFolderQuestion(const PortalFolderQuestion&) = delete;
    PortalFolderQuestion& operator=(const PortalFolderQuestion&) = delete;
    ~PortalFolderQuestion() override = default;

private:
    void askForVersion()
    {
        auto call = QDBusMessage::createMethodCall(service, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        call << interface << u"version"_s;
        auto* const watcher = new QDBusPendingCallWatcher(
            QDBusConnection::sessionBus().asyncCall(call, static_cast<int>(patience.count())), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
            watcher->deleteLater();
            versionTold(watcher->reply());
        });
    }

    void versionTold(const QDBusMessage& reply)
    {
        const QVariant version = reply.arguments().value(0).value<QDBusVariant>().variant();
        if (reply.type() == QDBusMessage::ReplyMessage && version.toUInt() >= versionWithFolders) {
            openDialog();
        } else {
            finish(FolderPicker::Unavailable());
        }
    }

    void openDialog()
    {
        auto call = QDBusMessage::createMethodCall(service, path, interface, u"OpenFile"_s);
        call << m_window << m_question.title;
        // The portal expects a path to end in a zero byte.
        const QByteArray startFolder = QFile::encodeName(m_question.startFolder) + '\0';
        m_request = std::make_unique<PortalRequest>(
            call,
            QVariantMap{{u"accept_label"_s, m_question.acceptLabel},
                        {u"directory"_s, true},
                        {u"multiple"_s, false},
                        {u"modal"_s, true},
                        {u"current_folder"_s, startFolder}},
            [this](const PortalRequest::Answer& answer) { dialogAnswered(answer); }, patience);
    }

    void dialogAnswered(const PortalRequest::Answer& answer)
    {
        if (answer) {
            finish(folderOf(*answer));
        } else if (m_request->refusedByUser()) {
            finish(FolderPicker::Cancelled());
        } else {
            finish(FolderPicker::Unavailable());
        }
    }

    void finish(const FolderPicker::Answer& answer)
    {
        if (std::exchange(m_finished, true)) {
            return;
        }
        m_request.reset();
        // Queued, so that the callback may destroy this object.
        QMetaObject::invokeMethod(
            this,
            [this, answer] {
                const auto answered = std::exchange(m_answered, {});
                answered(answer);
            },
            Qt::QueuedConnection);
    }

    FolderPicker::Question m_question;
    QString m_window;
    std::function<void(const FolderPicker::Answer&)> m_answered;
    QDBusServiceWatcher m_watcher;
    std::unique_ptr<PortalRequest> m_request;
    bool m_finished = false;
};

} // namespace

PortalFolderPicker::PortalFolderPicker(Windows windows)
    : m_windows(windows)
{}

std::unique_ptr<FolderQuestion> PortalFolderPicker::ask(const Question& question,
                                                        std::function<void(const Answer&)> answered)
{
    const bool named = m_windows == Windows::X11 && question.window != 0;
    const QString window = named ? u"x11:%1"_s.arg(question.window, 0, 16) : QString();
    return std::make_unique<PortalFolderQuestion>(question, window, std::move(answered));
}

} // namespace lapsa

#include "PortalFolderPicker.moc"
