// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ChooserPlaces.h"

#include "LaneJob.h"
#include "Lanes.h"
#include "Localized.h"
#include "Symbols.h"
#include "TextStyle.h"
#include "ThemePalette.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QStandardPaths>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int placesWidth = 168;
constexpr double symbolSize = 13;
constexpr double markOpacity = 0.09;
constexpr int folderRole = Qt::UserRole;
constexpr int symbolRole = Qt::UserRole + 1;
constexpr int rankRole = Qt::UserRole + 2;
constexpr int lastRank = 100;

/// One of the desktop's standard folders, under the symbol that users know.
struct UserPlace
{
    QStandardPaths::StandardLocation location;
    QString symbol;
};

QList<UserPlace> userPlaces()
{
    return {{QStandardPaths::DesktopLocation, u"desktopcomputer"_s},    {QStandardPaths::DocumentsLocation, u"doc"_s},
            {QStandardPaths::DownloadLocation, u"arrow.down.circle"_s}, {QStandardPaths::PicturesLocation, u"photo"_s},
            {QStandardPaths::MusicLocation, u"music.note"_s},           {QStandardPaths::MoviesLocation, u"film"_s}};
}

} // namespace

ChooserPlaces::ChooserPlaces(Lanes& lanes, QWidget* parent)
    : QListWidget(parent)
    , m_lanes(lanes)
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
    addPlace(
        {.name = Localized::text(u"Home"_s, u"Cartella home"_s), .symbol = u"house"_s, .folder = QDir::homePath()});
    addPlace({.name = Localized::text(u"Computer"_s, u"Computer"_s),
              .symbol = u"internaldrive"_s,
              .folder = QDir::rootPath(),
              .rank = lastRank});
    quieten();
    connect(this, &QListWidget::itemClicked, this,
            [this](const QListWidgetItem* item) { emit chosen(item->data(folderRole).toString()); });
    lookForFolders();
}

void ChooserPlaces::lookForFolders()
{
    m_lanes.look(QDir::homePath(), [places = QPointer(this)](LaneJob&) -> Lanes::Report {
        QList<Place> found;
        for (const UserPlace& place : userPlaces()) {
            const QString folder = QDir::cleanPath(QStandardPaths::writableLocation(place.location));
            found.push_back({.name = singleLine(QDir(folder).dirName()),
                             .symbol = place.symbol,
                             .folder = folder,
                             .rank = static_cast<int>(found.size()) + 1});
        }
        return [places, found] {
            for (const Place& place : found) {
                if (places && !place.folder.isEmpty() && place.folder != QDir::homePath()) {
                    places->lookAt(place);
                }
            }
        };
    });
}

/// Each by itself: one that does not answer holds up no other.
void ChooserPlaces::lookAt(const Place& place)
{
    m_lanes.look(place.folder, [places = QPointer(this), place](LaneJob&) -> Lanes::Report {
        return [places, place, exists = QFileInfo(place.folder).isDir()] {
            if (places && exists) {
                places->addPlace(place);
                places->tintSymbols();
                places->showPlace(places->m_shown);
            }
        };
    });
}

void ChooserPlaces::showPlace(const QString& folder)
{
    m_shown = folder;
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

void ChooserPlaces::addPlace(const Place& place)
{
    int row = 0;
    while (row < count() && item(row)->data(rankRole).toInt() < place.rank) {
        ++row;
    }
    auto* const added = new QListWidgetItem(place.name);
    added->setData(folderRole, place.folder);
    added->setData(symbolRole, place.symbol);
    added->setData(rankRole, place.rank);
    added->setToolTip(plainToolTip(place.folder));
    insertItem(row, added);
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
