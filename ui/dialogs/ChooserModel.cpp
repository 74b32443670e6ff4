// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ChooserModel.h"

#include "Localized.h"
#include "Picture.h"
#include "TextStyle.h"
#include "ThemePalette.h"

#include <QDateTime>
#include <QGuiApplication>
#include <QLocale>
#include <QMimeDatabase>

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize iconSize(20, 20);

/// Numbers are aligned to the end of their column.
QVariant alignmentOf(int column)
{
    const Qt::Alignment side = column == ChooserModel::Size ? Qt::AlignTrailing : Qt::AlignLeading;
    return QVariant::fromValue(side | Qt::AlignVCenter);
}

/// The theme's icon, or our own drawing. A selected icon keeps its colours.
QIcon themed(const QStringList& names, const QString& drawing)
{
    const auto name = std::ranges::find_if(names, [](const QString& each) { return QIcon::hasThemeIcon(each); });
    const QIcon source = name == names.end() ? QIcon() : QIcon::fromTheme(*name);
    QIcon icon;
    for (const double ratio : {1.0, 2.0}) {
        const QPixmap pixmap = source.isNull() ? svgPicture(u":/lapsa/icons/%1.svg"_s.arg(drawing), iconSize, ratio)
                                               : source.pixmap(iconSize, ratio);
        icon.addPixmap(pixmap, QIcon::Normal);
        icon.addPixmap(pixmap, QIcon::Selected);
    }
    return icon;
}

/// For sizes and times. Lapsa's rule for choosing Italian differs from the toolkit's.
QLocale shownLocale()
{
    const QLocale usual;
    return Localized::isItalian() && usual.language() != QLocale::Italian ? QLocale(QLocale::Italian) : usual;
}

} // namespace

ChooserModel::ChooserModel(Lanes& lanes, bool foldersOnly, QObject* parent)
    : QAbstractTableModel(parent)
    , m_lanes(lanes)
    , m_foldersOnly(foldersOnly)
    , m_look(lanes)
{}

QString ChooserModel::path(const QModelIndex& index) const
{
    return (m_folder.endsWith(u'/') ? m_folder : m_folder + u'/') + entryAt(index).name;
}

bool ChooserModel::isFolder(const QModelIndex& index) const
{
    return entryAt(index).isFolder;
}

QModelIndex ChooserModel::indexOf(const QString& name) const
{
    const auto found = std::ranges::find(m_rows, name, [](const auto& entry) { return entry->name; });
    return found != m_rows.end() ? index(static_cast<int>(found - m_rows.begin()), Name) : QModelIndex();
}

int ChooserModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ChooserModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Changed + 1;
}

QVariant ChooserModel::data(const QModelIndex& index, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return shownText(index);
    case Qt::DecorationRole:
        return index.column() == Name ? iconOf(entryAt(index)) : QVariant();
    case Qt::TextAlignmentRole:
        return alignmentOf(index.column());
    case Qt::ForegroundRole:
        return index.column() == Name ? QVariant()
                                      : QVariant(themeColor(ColorRole::Secondary, QGuiApplication::palette()));
    case Qt::ToolTipRole:
        return plainToolTip(entryAt(index).name);
    case pathRole:
        return path(index);
    default:
        return {};
    }
}

QVariant ChooserModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::TextAlignmentRole) {
        return alignmentOf(section);
    }
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Name:
        return Localized::text(u"Name"_s, u"Nome"_s);
    case Size:
        return Localized::text(u"Size"_s, u"Dimensione"_s);
    case Changed:
        return Localized::text(u"Changed"_s, u"Modificato"_s);
    default:
        return {};
    }
}

Qt::ItemFlags ChooserModel::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

const ListedEntry& ChooserModel::entryAt(const QModelIndex& index) const
{
    return *m_rows[std::size_t(index.row())];
}

QVariant ChooserModel::shownText(const QModelIndex& index) const
{
    const ListedEntry& entry = entryAt(index);
    switch (index.column()) {
    case Name:
        return singleLine(entry.name);
    case Size:
        return entry.isFolder ? QString()
                              : shownLocale().formattedDataSize(entry.size, 1, QLocale::DataSizeTraditionalFormat);
    case Changed:
        return shownLocale().toString(QDateTime::fromMSecsSinceEpoch(entry.changed), QLocale::ShortFormat);
    default:
        return {};
    }
}

QIcon ChooserModel::iconOf(const ListedEntry& entry) const
{
    // By the name alone: no file is read to choose its icon.
    const QMimeType type =
        entry.isFolder ? QMimeType() : QMimeDatabase().mimeTypeForFile(entry.name, QMimeDatabase::MatchExtension);
    QIcon& icon = m_icons[type.name()];
    if (icon.isNull()) {
        icon = entry.isFolder ? themed({u"folder"_s, u"inode-directory"_s}, u"folder"_s)
                              : themed({type.iconName(), type.genericIconName(), u"text-x-generic"_s}, u"page"_s);
    }
    return icon;
}

} // namespace lapsa
