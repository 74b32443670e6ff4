// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DelegateWorld.h"

#include "SplashView.h"

#include <QJsonDocument>
#include <QJsonValue>

namespace lapsa::test {

using namespace Qt::StringLiterals;

DelegateWorld::DelegateWorld() = default;

DelegateWorld::~DelegateWorld()
{
    // The manual time never reaches the end of the splash.
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (qobject_cast<SplashView*>(window) != nullptr) {
            delete window;
        }
    }
}

void DelegateWorld::start()
{
    make();
    delegate->applicationDidFinishLaunching();
}

void DelegateWorld::make()
{
    delegate = std::make_unique<AppDelegate>(
        AppDelegate::Environment{time, time, lanes, appearance, workspace, pasteboard, notificationCentre, statusBar,
                                 hotKeys, selection, folderPicker, windowSystem, pointer});
}

void DelegateWorld::choose(const QString& title) const
{
    const auto entry = std::ranges::find(menu(), title, &StatusMenuEntry::title);
    if (entry == menu().end()) {
        qFatal("no such entry");
    }
    entry->action();
}

QJsonArray DelegateWorld::storedItems() const
{
    return QJsonDocument::fromJson(home.dataFile(u"state.json"_s)).array();
}

bool DelegateWorld::lists(const QString& path) const
{
    return std::ranges::any_of(storedItems(),
                               [&path](const QJsonValue& item) { return item[u"path"_s].toString() == path; });
}

} // namespace lapsa::test
