#include "app/screens/EmptyBrowser.h"

#include "app/screens/Appearance.h"
#include "app/screens/Controls.h"
#include "app/screens/DiscImage.h"
#include "base/Paths.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace volvelle {

namespace {

constexpr int greatestDisc = 344; // pixels, as all here
constexpr int leastDisc = 64;
constexpr int buttonTop = 156; // below the disc
constexpr int buttonWidth = 154;
constexpr int buttonHeight = 52;
constexpr int buttonGap = 12;
constexpr int textHeight = 248; // of all below the disc

struct Line {
    const char* text;
    int top; // below the disc
    int height;
    Appearance::Text font;
    bool isFaint;
};

constexpr Line lines[] = {
    {"Press New for your first idea", 32, 34, Appearance::Text::display, false},
    {"New makes a sixteen-track idea and plays it: chords, melody, bass and drums.", 76, 24,
     Appearance::Text::text, true},
    {"Keep it with Save, or press Generate until one is worth keeping.", 100, 24, Appearance::Text::text,
     true},
    {"Import opens MIDI files. You can also drop them on this window.", 228, 20, Appearance::Text::small,
     true},
};

} // namespace

EmptyBrowser::EmptyBrowser(QWidget* parent)
    : QWidget(parent),
      newButton(makeButton("New", ButtonKind::primary, "A new idea", "Ctrl+N", this)),
      importButton(makeButton("Import", ButtonKind::secondary, "Copy MIDI files here", "Ctrl+O", this))
{
    for (QPushButton* button : {newButton, importButton}) {
        button->setFont(Appearance::font(Appearance::Text::largeButton));
    }
    if (const auto folder = resourcesFolder()) {
        example = std::make_unique<FileCircle>(*folder / "New MIDI Idea.mid");
    }
    connect(&Appearance::shared(), &Appearance::changed, this, [this] {
        disc = {};
        update();
    });
}

int EmptyBrowser::discSide() const
{
    return std::clamp(height() - textHeight, leastDisc, greatestDisc);
}

int EmptyBrowser::top() const
{
    return std::max(0, (height() - discSide() - textHeight) / 2 - 12);
}

void EmptyBrowser::resizeEvent(QResizeEvent* /*event*/)
{
    const int left = width() / 2 - buttonWidth - buttonGap / 2;
    newButton->setGeometry(left, top() + discSide() + buttonTop, buttonWidth, buttonHeight);
    importButton->setGeometry(left + buttonWidth + buttonGap, top() + discSide() + buttonTop, buttonWidth,
                              buttonHeight);
}

void EmptyBrowser::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const auto pixels = static_cast<int>(std::lround(discSide() * devicePixelRatioF()));
    if (disc.width() != pixels && example) {
        disc = faintDiscImage(*example, discSide(), devicePixelRatioF(), Appearance::shared().theme());
    }
    painter.drawImage(QRect((width() - discSide()) / 2, top(), discSide(), discSide()), disc);
    const Tokens& tokens = Appearance::shared().tokens();
    for (const Line& line : lines) {
        painter.setFont(Appearance::font(line.font));
        painter.setPen(line.isFaint ? tokens.fg2 : tokens.fg);
        painter.drawText(QRect(0, top() + discSide() + line.top, width(), line.height), Qt::AlignCenter,
                         line.text);
    }
}

} // namespace volvelle
