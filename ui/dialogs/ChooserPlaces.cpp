// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ChooserPlaces.h"

#include "Localized.h"
#include "Symbols.h"
#include "TextStyle.h"
#include "ThemePalette.h"

#include <QDir>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QStandardPaths>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int placesWidth = 168;
constexpr double symbolSize = 13;
constexpr double markOpacity = 0.09;
constexpr int folderRole = Qt::UserRole;
constexpr int symbolRole = Qt::UserRole + 1;

/// One of the desktop's standard folders, under the name that users know.
struct UserPlace
{
    QStandardPaths::StandardLocation location;
    QString symbol;
};

} // namespace

ChooserPlaces::ChooserPlaces(QWidget* parent)
    : QListWidget(parent)
{
    setObjectName(u"sidebar"_s);
    setAccessibleName(Localized::text(u"Places"_s, u"Posizioni"_s));
    setFont(fontFor(bodyText));
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setDragDropMode(NoDragDrop);
    setEditTriggers(NoEditTriggers);
    viewport()->setAutoFillBackground(false);
    setFixedWidth(qRound(placesWidth * textScale()));
    addPlace(Localized::text(u"Home"_s, u"Cartella home"_s), u"house"_s, QDir::homePath());
    for (const UserPlace& place : {UserPlace{QStandardPaths::DesktopLocation, u"desktopcomputer"_s},
                                   UserPlace{QStandardPaths::DocumentsLocation, u"doc"_s},
                                   UserPlace{QStandardPaths::DownloadLocation, u"arrow.down.circle"_s},
                                   UserPlace{QStandardPaths::PicturesLocation, u"photo"_s},
                                   UserPlace{QStandardPaths::MusicLocation, u"music.note"_s},
                                   UserPlace{QStandardPaths::MoviesLocation, u"film"_s}}) {
        const QString folder = QStandardPaths::writableLocation(place.location);
        if (folder != QDir::homePath() && QDir(folder).exists()) {
            addPlace(singleLine(QDir(folder).dirName()), place.symbol, folder);
        }
    }
    addPlace(Localized::text(u"Computer"_s, u"Computer"_s), u"internaldrive"_s, QDir::rootPath());
    quieten();
    connect(this, &QListWidget::itemClicked, this,
            [this](const QListWidgetItem* item) { emit chosen(item->data(folderRole).toString()); });
}

void ChooserPlaces::showPlace(const QString& folder)
{
    clearSelection();
    for (int row = 0; row < count(); ++row) {
        if (item(row)->data(folderRole).toString() == folder) {
            setCurrentRow(row, QItemSelectionModel::ClearAndSelect);
        }
    }
}

QSize ChooserPlaces::sizeHint() const
{
    return {width(), 0};
}

void ChooserPlaces::keyPressEvent(QKeyEvent* event)
{
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enters && currentItem() != nullptr) {
        emit chosen(currentItem()->data(folderRole).toString());
        return;
    }
    QListWidget::keyPressEvent(event);
}

void ChooserPlaces::changeEvent(QEvent* event)
{
    QListWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        quieten();
    }
}

void ChooserPlaces::addPlace(const QString& name, const QString& symbol, const QString& folder)
{
    auto* const place = new QListWidgetItem(name, this);
    place->setData(folderRole, folder);
    place->setData(symbolRole, symbol);
    place->setToolTip(plainToolTip(folder));
}

/// Marks the current place without the accent colour, which is reserved for the selection.
void ChooserPlaces::quieten()
{
    QPalette quiet = QGuiApplication::palette();
    const QColor ground = themeColor(ColorRole::Window, quiet);
    const QColor primary = themeColor(ColorRole::Primary, quiet);
    quiet.setColor(paletteRole(ColorRole::Accent), blended(withOpacity(primary, markOpacity), ground));
    quiet.setColor(paletteRole(ColorRole::OnAccent), primary);
    if (quiet != palette()) {
        setPalette(quiet);
    }
    tintSymbols();
}

void ChooserPlaces::tintSymbols()
{
    for (int row = 0; row < count(); ++row) {
        const QString symbol = item(row)->data(symbolRole).toString();
        const auto tinted = [&](ColorRole role) {
            return SymbolLook{symbol, symbolSize, SymbolWeight::Medium, themeColor(role, palette())};
        };
        QIcon icon;
        for (const double ratio : {1.0, 2.0}) {
            icon.addPixmap(symbolPixmap(tinted(ColorRole::Secondary), ratio), QIcon::Normal);
            icon.addPixmap(symbolPixmap(tinted(ColorRole::Primary), ratio), QIcon::Selected);
        }
        item(row)->setIcon(icon);
    }
}

} // namespace lapsa
