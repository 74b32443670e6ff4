// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreedesktopWorkspace.h"

#include "DetachedProcess.h"
#include "FileUri.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>
#include <QStringList>
#include <QUrl>

#include <chrono>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// A file manager takes up to about a second to start.
constexpr std::chrono::milliseconds revealPatience{5000};

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

void openWithDefaultApplication(const QString& path)
{
    // Without a display, the openers would look for a terminal program.
    if (!hasDisplay()) {
        return;
    }
    // The first opener knows the desktop and its settings; the second needs no desktop.
    const QByteArray uri = fileUri(path);
    if (!startDetached({"xdg-open", uri})) {
        startDetached({"gio", "open", uri});
    }
}

} // namespace

void FreedesktopWorkspace::open(const QUrl& url)
{
    if (url.isLocalFile()) {
        openWithDefaultApplication(url.toLocalFile());
    }
}

void FreedesktopWorkspace::reveal(const QUrl& url)
{
    if (!url.isLocalFile()) {
        return;
    }
    const QString path = url.toLocalFile();
    auto message = QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                                  u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    message.setArguments({QStringList{QString::fromLatin1(fileUri(path))}, QString()});
    auto* watcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(message, int(revealPatience.count())), QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, path] {
        watcher->deleteLater();
        if (watcher->isError()) {
            openWithDefaultApplication(QFileInfo(path).path());
        }
    });
}

} // namespace lapsa
