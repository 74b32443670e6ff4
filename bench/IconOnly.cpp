// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

// The smallest program with the same toolkit that shows an icon in the tray.

#include <QApplication>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    constexpr int extent = 22;
    QPixmap picture(extent, extent);
    picture.fill(Qt::blue);
    QSystemTrayIcon icon{QIcon(picture)};
    icon.show();
    return QApplication::exec();
}
