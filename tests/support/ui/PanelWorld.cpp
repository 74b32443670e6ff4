// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PanelWorld.h"

#include "FileListView.h"
#include "FileRowView.h"
#include "LapsaStyle.h"
#include "Motion.h"
#include "RowIconButton.h"
#include "ThemePalette.h"

#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QTest>

#include <tuple>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int iconEdge = 24;

} // namespace

QIcon RecordingIcons::icon(const QUrl&, ItemKind kind)
{
    QPixmap pixmap(iconEdge, iconEdge);
    pixmap.fill(kind == ItemKind::Folder ? folderColor : color);
    return QIcon(pixmap);
}

std::optional<ItemWork> PlayedWork::workOn(const QString& id) const
{
    const auto found = works.constFind(id);
    return found != works.cend() ? std::optional(*found) : std::nullopt;
}

PanelWorld::PanelWorld()
    : panel({store(), time, time, icons, kinds, work}, [this] { ++preferencesOpened; })
{
    panel.show();
    panel.activateWindow();
    std::ignore = QTest::qWaitForWindowActive(&panel); // on a real display the window manager decides when
    settle();
}

void PanelWorld::setUpApplication()
{
    QApplication::setStyle(new LapsaStyle);
    motion::setAllowedByDesktop(false);
    QApplication::setPalette(themePalette(ColorScheme::Light));
    QFont font(u"DejaVu Sans"_s);
    font.setPointSizeF(10);
    QApplication::setFont(font);
}

LapsaItem PanelWorld::addItem(const QString& name, std::int64_t minutes)
{
    const LapsaItem item = add(name.endsWith(u'/') ? home.makeFolder(name.chopped(1)) : home.makeFile(name), minutes);
    settle();
    return item;
}

void PanelWorld::settle()
{
    QApplication::sendPostedEvents();
    QApplication::processEvents();
}

FileListView& PanelWorld::list()
{
    return *panel.findChild<FileListView*>();
}

FileRowView& PanelWorld::row(qsizetype index)
{
    return *list().visibleRows().at(index);
}

RowIconButton& PanelWorld::button(qsizetype index, const QString& help)
{
    return named<RowIconButton>(row(index), help);
}

Language::Language(const char* locale)
    : m_before(qgetenv("LC_ALL"))
{
    qputenv("LC_ALL", locale);
}

Language::~Language()
{
    qputenv("LC_ALL", m_before);
}

} // namespace lapsa::test
