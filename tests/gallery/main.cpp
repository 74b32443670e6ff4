// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Gallery.h"
#include "LapsaStyle.h"
#include "ToolkitTexts.h"

#include <QApplication>
#include <QIcon>

using namespace Qt::StringLiterals;

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    if (QCoreApplication::arguments().size() != 2) {
        qFatal("usage: lapsa_gallery FOLDER");
    }
    QApplication::setStyle(new lapsa::LapsaStyle);
    lapsa::ToolkitTexts toolkitTexts;
    QCoreApplication::installTranslator(&toolkitTexts);
    QFont font(u"Inter"_s);
    font.setPointSizeF(10);
    QApplication::setFont(font);
    QIcon::setThemeSearchPaths({u"/usr/share/icons"_s});
    QIcon::setThemeName(u"Adwaita"_s);
    lapsa::test::Gallery(QCoreApplication::arguments().at(1)).paintEverything();
    return 0;
}
