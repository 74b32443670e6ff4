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
constexpr QDir::Filters folders = QDir::AllDirs | QDir::Drives | QDir::NoDotAndDotDot;

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

/// The name on the disk; the model's own fileName() returns the displayed text.
QString nameOf(const QModelIndex& index)
{
    return index.data(QFileSystemModel::FileNameRole).toString();
}

} // namespace

ChooserModel::ChooserModel(bool foldersOnly, QObject* parent)
    : QFileSystemModel(parent)
{
    setReadOnly(true);
    setFilter(foldersOnly ? folders : folders | QDir::Files);
    setOption(DontUseCustomDirectoryIcons);
}

void ChooserModel::setHiddenShown(bool shown)
{
    setFilter(shown ? filter() | QDir::Hidden : filter() & ~QDir::Filters(QDir::Hidden));
}

QVariant ChooserModel::data(const QModelIndex& index, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return shownText(index);
    case Qt::DecorationRole:
        return index.column() == Name ? iconOf(index) : QVariant();
    case Qt::TextAlignmentRole:
        return alignmentOf(index.column());
    case Qt::ForegroundRole:
        return index.column() == Name ? QVariant()
                                      : QVariant(themeColor(ColorRole::Secondary, QGuiApplication::palette()));
    case Qt::ToolTipRole:
        return plainToolTip(nameOf(index));
    default:
        return QFileSystemModel::data(index, role);
    }
}

QVariant ChooserModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::TextAlignmentRole) {
        return alignmentOf(section);
    }
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return role == Qt::DecorationRole ? QVariant() : QFileSystemModel::headerData(section, orientation, role);
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
    return QFileSystemModel::flags(index) & (Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren);
}

QVariant ChooserModel::shownText(const QModelIndex& index) const
{
    switch (index.column()) {
    case Name:
        return singleLine(nameOf(index));
    case Size:
        return isDir(index) ? QString()
                            : shownLocale().formattedDataSize(size(index), 1, QLocale::DataSizeTraditionalFormat);
    case Changed:
        return shownLocale().toString(lastModified(index), QLocale::ShortFormat);
    default:
        return {};
    }
}

QIcon ChooserModel::iconOf(const QModelIndex& index) const
{
    const bool folder = isDir(index);
    // By the name alone: no file is read to choose its icon.
    const QMimeType type =
        folder ? QMimeType() : QMimeDatabase().mimeTypeForFile(nameOf(index), QMimeDatabase::MatchExtension);
    QIcon& icon = m_icons[type.name()];
    if (icon.isNull()) {
        icon = folder ? themed({u"folder"_s, u"inode-directory"_s}, u"folder"_s)
                      : themed({type.iconName(), type.genericIconName(), u"text-x-generic"_s}, u"page"_s);
    }
    return icon;
}

} // namespace lapsa
