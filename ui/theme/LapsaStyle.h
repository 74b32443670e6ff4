// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QProxyStyle>

class QMenu;

namespace lapsa {

/// Draws the toolkit's own controls: text fields, combo boxes, check boxes, scroll bars, menus, tooltips, and the
/// buttons and lists of its dialogs. All colours come from themePalette().
///
/// The toolkit has one style for the whole application, and every widget can reach it. So it also holds the desktop's
/// settings for all windows: whether animations (Motion.h) and translucency (Material.h) are allowed.
class LapsaStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    LapsaStyle();

    /// Enabled until the desktop says otherwise.
    void setAnimationsEnabled(bool enabled) { m_animationsEnabled = enabled; }

    [[nodiscard]] bool animationsEnabled() const { return m_animationsEnabled; }

    /// False until the desktop reports that it composites windows. A change closes open menus, whose shape it decides.
    void setTranslucencyAvailable(bool available);

    [[nodiscard]] bool translucencyAvailable() const { return m_translucencyAvailable; }

    bool eventFilter(QObject* watched, QEvent* event) override;
    void polish(QWidget* widget) override;
    void unpolish(QWidget* widget) override;
    using QProxyStyle::polish;
    using QProxyStyle::unpolish;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                         const QWidget* widget) const override;
    [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                       const QWidget* widget) const override;
    [[nodiscard]] QRect subElementRect(SubElement element, const QStyleOption* option,
                                       const QWidget* widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* returned) const override;

private:
    // ---- Fields: LapsaStyle_fields.cpp ---------------------------------------------------------------------------

    static void drawLineEdit(const QStyleOption& option, QPainter& painter);
    static void drawCheckBox(const QStyleOption& option, QPainter& painter);
    static void drawPushButton(const QStyleOption& option, QPainter& painter);
    static void drawComboBox(const QStyleOptionComplex& option, QPainter& painter);
    static void drawScrollBar(const QStyleOptionComplex& option, QPainter& painter, const QRect& slider);

    // ---- Lists of files: LapsaStyle_lists.cpp --------------------------------------------------------------------

    static void drawListFrame(const QStyleOption& option, QPainter& painter, const QWidget* widget);
    static void drawSortArrow(const QStyleOption& option, QPainter& painter, const QWidget* widget);
    static void drawListItem(const QStyleOption& option, QPainter& painter);
    static void drawHeaderSection(const QStyleOption& option, QPainter& painter);
    void drawHeaderLabel(const QStyleOption& option, QPainter& painter, const QWidget* widget) const;
    static void drawToolButton(const QStyleOption& option, QPainter& painter);

    // ---- Menus: LapsaStyle_menus.cpp -----------------------------------------------------------------------------

    static void drawMenuGround(const QStyleOption& option, QPainter& painter, const QWidget* widget);
    static void drawMenuItem(const QStyleOption& option, QPainter& painter, const QWidget* widget);
    void prepare(QMenu& menu);
    /// Gives a menu round corners and a shadow, which need a compositing window manager, or takes them away.
    void shape(QMenu& menu) const;
    [[nodiscard]] static QSize menuItemSize(const QStyleOption& option, const QSize& size);
    static void drawToolTip(const QStyleOption& option, QPainter& painter);

    bool m_animationsEnabled = true;
    bool m_translucencyAvailable = false;
};

} // namespace lapsa
