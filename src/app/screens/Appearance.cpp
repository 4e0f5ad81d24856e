#include "app/screens/Appearance.h"

#include <QApplication>
#include <QFile>
#include <QStyle>
#include <QStyleFactory>
#include <QToolTip>

#include <array>
#include <utility>

namespace volvelle {

namespace {

// A rule's "@name" is the token of that name.
constexpr const char* rules = R"(
* { outline: none; }
QToolTip { background: @fg; color: @bg; border: 0; padding: 4px 8px; }
QLabel { background: transparent; color: @fg; }
QLabel[tone="2"] { color: @fg2; }
QLabel[tone="3"] { color: @fg3; }
QPushButton { border-radius: 8px; padding: 0 16px; min-height: 34px; color: @fg; background: @control;
  border: 1px solid @rimEdge; font-weight: 600; }
QPushButton:hover { background: @hover; }
QPushButton:pressed { background: @pressed; }
QPushButton:disabled { background: transparent; border-color: transparent; color: @disabled; }
QPushButton[kind="primary"] { background: @accent; border: 1px solid @accent; color: @onAccent; }
QPushButton[kind="primary"]:hover { background: @accentHover; border-color: @accentHover; }
QPushButton[kind="primary"]:pressed { background: @accentPressed; border-color: @accentPressed; }
QPushButton[kind="primary"]:disabled { background: @line; border-color: @line; color: @disabled; }
QPushButton[kind="quiet"] { background: transparent; }
QPushButton[kind="quiet"]:hover { background: @surface; }
QPushButton[kind="quiet"]:pressed { background: @pressed; }
QPushButton[kind="link"] { background: transparent; border: 0; border-radius: 4px; padding: 0 4px;
  min-height: 26px; color: @fg2; font-weight: 400; text-decoration: underline; }
QPushButton[kind="link"]:hover { color: @fg; }
QLineEdit { background: @surface; color: @fg; border: 1px solid @edge; border-radius: 8px; padding: 0 11px;
  selection-background-color: @accent; selection-color: @onAccent; }
QLineEdit:hover { border-color: @fg2; }
QLineEdit:focus { border-color: @fg; }
QListView { background: transparent; border: 0; }
QScrollBar:vertical { background: transparent; width: 8px; margin: 0; }
QScrollBar::handle:vertical { background: @tick; border-radius: 3px; min-height: 40px; margin: 0 1px; }
QScrollBar::add-line, QScrollBar::sub-line, QScrollBar::add-page, QScrollBar::sub-page {
  background: transparent; height: 0; border: 0; }
QMenu { background: @surface; color: @fg; border: 1px solid @rimEdge; padding: 4px; }
QMenu::item { padding: 6px 24px 6px 12px; border-radius: 6px; }
QMenu::item:selected { background: @hover; }
QMenu::item:disabled { color: @disabled; }
QFrame[kind="bar"] { background: @surface; border: 0; border-top: 1px solid @rimEdge; }
QFrame[kind="hairline"] { background: @line; border: 0; }
)";

QFont::Weight weightOf(Appearance::Text kind)
{
    switch (kind) {
    case Appearance::Text::display:
    case Appearance::Text::title:
    case Appearance::Text::largeButton:
    case Appearance::Text::name:
        return QFont::DemiBold;
    case Appearance::Text::caps:
        return QFont::Medium;
    default:
        return QFont::Normal;
    }
}

int sizeOf(Appearance::Text kind)
{
    static constexpr std::array sizes{28, 20, 16, 14, 14, 13, 12, 11};
    return sizes[static_cast<std::size_t>(kind)];
}

} // namespace

Appearance& Appearance::shared()
{
    static Appearance only;
    return only;
}

const Tokens& Appearance::tokens() const
{
    return Tokens::of(theme());
}

void Appearance::apply(Theme theme)
{
    current = theme;
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setFont(font(Text::text));
    QToolTip::setFont(font(Text::meta));
    QApplication::setPalette(palette());
    qApp->setStyleSheet(styleSheet());
    Q_EMIT changed();
}

bool Appearance::reducesMotion()
{
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) == 0;
}

QFont Appearance::font(Text kind)
{
    QFont font;
    font.setFamilies({"Inter", "Noto Sans", "DejaVu Sans"});
    font.setPixelSize(sizeOf(kind));
    font.setWeight(weightOf(kind));
    if (kind == Text::caps) {
        font.setLetterSpacing(QFont::AbsoluteSpacing, 0.5);
    }
    return font;
}

QPalette Appearance::palette() const
{
    const Tokens& t = tokens();
    QPalette palette;
    const std::array<std::pair<QPalette::ColorRole, QColor>, 15> roles{{
        {QPalette::Window, t.bg},
        {QPalette::Base, t.surface},
        {QPalette::AlternateBase, t.rim},
        {QPalette::Button, t.control},
        {QPalette::WindowText, t.fg},
        {QPalette::Text, t.fg},
        {QPalette::ButtonText, t.fg},
        {QPalette::PlaceholderText, t.fg3},
        {QPalette::Mid, t.rimEdge},
        {QPalette::Highlight, t.accent},
        {QPalette::HighlightedText, t.onAccent},
        {QPalette::Link, t.fg2},
        {QPalette::LinkVisited, t.fg2},
        {QPalette::ToolTipBase, t.fg},
        {QPalette::ToolTipText, t.bg},
    }};
    for (const auto& [role, color] : roles) {
        palette.setColor(role, color);
    }
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, t.disabled);
    }
    return palette;
}

QString Appearance::styleSheet() const
{
    const Tokens& t = tokens();
    const std::array<std::pair<const char*, QColor>, 18> names{{
        {"@accentHover", t.accentHover},
        {"@accentPressed", t.accentPressed},
        {"@accent", t.accent},
        {"@onAccent", t.onAccent},
        {"@surface", t.surface},
        {"@rimEdge", t.rimEdge},
        {"@control", t.control},
        {"@hover", t.controlHover},
        {"@pressed", t.controlPressed},
        {"@disabled", t.disabled},
        {"@line", t.line},
        {"@edge", t.edge},
        {"@tick", t.tick},
        {"@fg2", t.fg2},
        {"@fg3", t.fg3},
        {"@fg", t.fg},
        {"@bg", t.bg},
        {"@rim", t.rim},
    }};
    QString sheet = rules;
    for (const auto& [name, color] : names) {
        sheet.replace(name, color.name());
    }
    return sheet;
}

} // namespace volvelle
