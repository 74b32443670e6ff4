// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PreferencesView.h"

#include "Accessibility.h"
#include "AutoCleanFolderView.h"
#include "FileTypeRuleView.h"
#include "FocusRing.h"
#include "FolderChooser.h"
#include "LapsaStore.h"
#include "ListSection.h"
#include "Localized.h"
#include "Material.h"
#include "PushButton.h"
#include "ScrollPage.h"
#include "SettingsStore.h"
#include "SymbolTabBar.h"

#include <QEvent>
#include <QPainter>
#include <QShortcut>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int topMargin = 16;
constexpr int tabsToPage = 4;

} // namespace

PreferencesView::PreferencesView(LapsaStore& store, FolderPicker& folderPicker, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_folderPicker(folderPicker)
    , m_tabs(new SymbolTabBar(this))
    , m_pages(new QStackedWidget(this))
{
    installAccessibility();
    setFixedSize(extent);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, topMargin, 0, 0);
    column->setSpacing(tabsToPage);
    auto* const tabRow = new QHBoxLayout;
    tabRow->setContentsMargins(ScrollPage::margin, 0, ScrollPage::margin, 0);
    tabRow->addStretch();
    tabRow->addWidget(m_tabs);
    tabRow->addStretch();
    column->addLayout(tabRow);
    column->addWidget(m_pages, 1);

    m_tabs->setAccessibleName(Localized::preferences());
    m_tabs->addTab(u"gearshape"_s, Localized::text(u"General"_s, u"Generale"_s));
    m_tabs->addTab(u"doc.badge.gearshape"_s, Localized::fileTypeRules());
    m_tabs->addTab(u"folder.badge.gearshape"_s, Localized::text(u"Folders"_s, u"Cartelle"_s));
    makeGeneralTab();
    makeRulesTab();
    makeFoldersTab();
    new FocusRing(*this);

    connect(m_tabs, &QTabBar::currentChanged, m_pages, &QStackedWidget::setCurrentIndex);
    connect(&m_store, &LapsaStore::willChange, this, &PreferencesView::noteChange);
    connect(&m_store.settingsStore(), &SettingsStore::settingsChanged, this, &PreferencesView::noteChange);
    makeShortcuts();
}

void PreferencesView::showTab(Tab tab)
{
    m_tabs->setCurrentIndex(static_cast<int>(tab));
}

bool PreferencesView::showingFolderPicker() const
{
    return m_folderQuestion != nullptr || m_folderChooser != nullptr;
}

void PreferencesView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    // The window has its edge from the window manager: the ground's own hairline lies outside.
    material::paintWindow(painter, rect().adjusted(-1, -1, 1, 1), 0, palette());
}

bool PreferencesView::event(QEvent* event)
{
    if (event->type() == QEvent::ApplicationFontChange) {
        noteChange(); // once the controls have their new sizes
    }
    return QWidget::event(event);
}

void PreferencesView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    refresh();
}

ScrollPage* PreferencesView::makePage(const QString& name)
{
    auto* const page = new ScrollPage(name, m_pages);
    m_pages->addWidget(page);
    return page;
}

ListSection* PreferencesView::makeListTab(const QString& heading, PushButton* button)
{
    ScrollPage* const page = makePage(heading);
    auto* const section = new ListSection(heading, button);
    page->sections().addWidget(section);
    page->sections().addStretch();
    m_refreshers.push_back([page, section] { page->setOverhang(section->overhang()); });
    return section;
}

void PreferencesView::makeShortcuts()
{
    const auto onKeys = [this](const QKeySequence& keys, auto action) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
    };
    const auto step = [this](int by) {
        m_tabs->setCurrentIndex((m_tabs->currentIndex() + by + m_tabs->count()) % m_tabs->count());
    };
    onKeys(Qt::Key_Escape, [this] { window()->close(); });
    onKeys(Qt::CTRL | Qt::Key_W, [this] { window()->close(); });
    onKeys(Qt::CTRL | Qt::Key_PageDown, [step] { step(1); });
    onKeys(Qt::CTRL | Qt::Key_PageUp, [step] { step(-1); });
}

/// Told before or while something changes: it is read once, on the next turn, however many changes there were.
void PreferencesView::noteChange()
{
    if (std::exchange(m_changeNoted, true)) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_changeNoted = false;
            if (isVisible()) {
                refresh();
            }
        },
        Qt::QueuedConnection);
}

void PreferencesView::refresh()
{
    for (const auto& bringUpToDate : m_refreshers) {
        bringUpToDate();
    }
    refreshRules();
    refreshFolders();
    applyTheme();
}

void PreferencesView::applyTheme()
{
    const LapsaTheme theme = m_store.settings().theme;
    if (m_appliedTheme != theme) {
        m_appliedTheme = theme;
        m_store.applyAppTheme(theme);
    }
}

void PreferencesView::revealNewest(QWidget& view)
{
    auto* const area = qobject_cast<ScrollPage*>(m_pages->currentWidget());
    // Not before the page knows its new height.
    QTimer::singleShot(0, &view, [area, &view] {
        area->widget()->layout()->activate();
        area->widget()->adjustSize();
        area->ensureWidgetVisible(&view, 0, ScrollPage::margin);
    });
}

} // namespace lapsa
