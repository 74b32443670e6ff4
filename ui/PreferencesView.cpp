// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PreferencesView.h"

#include "Accessibility.h"
#include "AutoCleanFolderView.h"
#include "FileTypeRuleView.h"
#include "FocusRing.h"
#include "FolderChooser.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "Material.h"
#include "SettingsStore.h"
#include "SymbolTabBar.h"

#include <QPainter>
#include <QScrollArea>
#include <QShortcut>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int topMargin = 16;
constexpr int tabsToPage = 8;
constexpr int pageMargin = 24;
constexpr int pageTopMargin = 8;
constexpr int sectionSpacing = 24;

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
    tabRow->setContentsMargins(pageMargin, 0, pageMargin, 0);
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

void PreferencesView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    refresh();
}

QVBoxLayout* PreferencesView::makePage(const QString& name)
{
    auto* const area = new QScrollArea(m_pages);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    area->viewport()->setAutoFillBackground(false);
    auto* const page = new QWidget;
    page->setAccessibleName(name);
    auto* const sections = new QVBoxLayout(page);
    sections->setContentsMargins(pageMargin, pageTopMargin, pageMargin, pageMargin);
    sections->setSpacing(sectionSpacing);
    area->setWidget(page);
    page->setAutoFillBackground(false);
    m_pages->addWidget(area);
    return sections;
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
    for (const auto& bringUpToDate : m_generalControls) {
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
    auto* const area = qobject_cast<QScrollArea*>(m_pages->currentWidget());
    // Not before the page knows its new height.
    QTimer::singleShot(0, &view, [area, &view] {
        area->widget()->layout()->activate();
        area->widget()->adjustSize();
        area->ensureWidgetVisible(&view, 0, pageMargin);
    });
}

} // namespace lapsa
