// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

// lapsa_render_icons DRAWING FOLDER SIZE...: a drawing as pictures, each below the folder as an icon theme has it.

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QStringList>
#include <QSvgRenderer>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

bool drawIcon(QSvgRenderer& drawing, int size, const QString& path)
{
    QImage picture(size, size, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();
    return QDir().mkpath(QFileInfo(path).path()) && picture.save(path, "PNG");
}

} // namespace

int main(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.push_back(QString::fromLocal8Bit(argv[i]));
    }
    QSvgRenderer drawing(arguments.value(0));
    if (arguments.size() < 3 || !drawing.isValid()) {
        std::fprintf(stderr, "usage: lapsa_render_icons DRAWING FOLDER SIZE...\n");
        return EXIT_FAILURE;
    }
    const QString name = QFileInfo(arguments[0]).completeBaseName();
    for (const QString& size : arguments.mid(2)) {
        const QString path = u"%1/%2x%2/apps/%3.png"_s.arg(arguments[1], size, name);
        if (!drawIcon(drawing, size.toInt(), path)) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
