// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "DBusMenu.h"
#include "ProgramIdentity.h"
#include "StatusNotifierTypes.h"

#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QImage>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QString>

namespace lapsa {

/// `org.kde.StatusNotifierItem`, registered with every `org.kde.StatusNotifierWatcher` that starts.
class StatusNotifierItem final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category SCRIPTABLE true)
    Q_PROPERTY(QString Id READ id SCRIPTABLE true)
    Q_PROPERTY(QString Title READ title SCRIPTABLE true)
    Q_PROPERTY(QString Status READ status SCRIPTABLE true)
    Q_PROPERTY(int WindowId READ windowId SCRIPTABLE true)
    Q_PROPERTY(QString IconThemePath READ iconThemePath SCRIPTABLE true)
    Q_PROPERTY(QString IconName READ iconName SCRIPTABLE true)
    Q_PROPERTY(lapsa::StatusNotifierPixmaps IconPixmap READ iconPixmap SCRIPTABLE true)
    Q_PROPERTY(QString OverlayIconName READ noIcon SCRIPTABLE true)
    Q_PROPERTY(QString AttentionIconName READ noIcon SCRIPTABLE true)
    Q_PROPERTY(lapsa::StatusNotifierToolTip ToolTip READ toolTip SCRIPTABLE true)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu SCRIPTABLE true)
    Q_PROPERTY(QDBusObjectPath Menu READ menuPath SCRIPTABLE true)

public:
    explicit StatusNotifierItem(const ProgramIdentity& identity);
    ~StatusNotifierItem() override;

    /// The name of an icon in the themes of the program; tray hosts prefer it to the images. Without a name, they show
    /// the images.
    void setIcon(const QString& name, const QList<QImage>& images);
    void setToolTip(const QString& toolTip);

    [[nodiscard]] DBusMenu& menu() { return m_menu; }

    /// Whether a tray host shows it, as far as known.
    [[nodiscard]] bool shown() const { return m_shown; }

    [[nodiscard]] QString category() const;

    [[nodiscard]] QString id() const { return m_identity.shortName; }

    [[nodiscard]] QString title() const { return m_identity.name; }

    [[nodiscard]] QString status() const;

    [[nodiscard]] int windowId() const { return 0; }

    [[nodiscard]] QString iconThemePath() const { return m_identity.iconThemes; }

    [[nodiscard]] QString iconName() const { return m_iconName; }

    [[nodiscard]] QString noIcon() const { return {}; }

    [[nodiscard]] StatusNotifierPixmaps iconPixmap() const { return m_pixmaps; }

    [[nodiscard]] StatusNotifierToolTip toolTip() const;

    [[nodiscard]] bool itemIsMenu() const { return false; }

    [[nodiscard]] QDBusObjectPath menuPath() const;

public slots: // NOLINT(readability-redundant-access-specifiers): these are the methods on the bus

    // NOLINTBEGIN(readability-identifier-naming): their names are given by the interface
    Q_SCRIPTABLE void Activate(int x, int y);
    /// Called by a tray host that cannot show the menu itself.
    Q_SCRIPTABLE void ContextMenu(int x, int y);

    /// A middle click. Does nothing, but the tray host gets an answer.
    Q_SCRIPTABLE void SecondaryActivate(int /*x*/, int /*y*/) {}

    Q_SCRIPTABLE void Scroll(int /*delta*/, const QString& /*orientation*/) {}

    Q_SCRIPTABLE void ProvideXdgActivationToken(const QString& token);

signals:
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewToolTip();
    // NOLINTEND(readability-identifier-naming)

    void shownChanged();
    void activated(const QPoint& place);
    void menuRequested(const QPoint& place);

private slots:
    void askForHost();

private:
    void watcherChanged(const QString& name, const QString& before, const QString& now);
    void announce();
    void setShown(bool shown);

    ProgramIdentity m_identity;
    QString m_service;
    QDBusServiceWatcher m_watcher;
    DBusMenu m_menu;
    QString m_iconName;
    StatusNotifierPixmaps m_pixmaps;
    QString m_toolTip;
    bool m_shown = false;
    /// Counts the queries for a tray host: answers to earlier ones are ignored.
    int m_question = 0;
};

} // namespace lapsa
