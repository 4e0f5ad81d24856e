#include "app/screens/DocumentScreen.h"

#include "app/screens/Appearance.h"
#include "app/screens/Controls.h"
#include "app/screens/DiscImage.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace volvelle {

namespace {

constexpr int discMargin = 64;
constexpr int largeHeight = 52;
constexpr int buttonHeight = 44;
constexpr QSize playSize(20, 16); // of its triangle and the gap to its text

struct FileText : UILabel {
    explicit FileText(FileLabel* to) : label(to) {}

    void setText(const std::string& text) override
    {
        if (label) {
            label->setText(QString::fromStdString(text));
        }
    }

    QPointer<FileLabel> label;
};

QIcon playIcon()
{
    QPixmap pixmap(playSize * 4);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath triangle(QPointF(16, 8));
    triangle.lineTo(56, 32);
    triangle.lineTo(16, 56);
    painter.fillPath(triangle, Appearance::shared().tokens().fg);
    return pixmap;
}

} // namespace

DocumentScreen::DocumentScreen(MIDIDocumentViewController& screen, QWidget* parent)
    : QWidget(parent),
      circleDisc(new DiscWidget(this)),
      file(new FileLabel(this)),
      meta(new QLabel(this)),
      legend(new Legend(this)),
      sound(new QLabel(this)),
      generate(makeButton("Generate", ButtonKind::primary, "Make a new idea and play it", "G", this)),
      play(makeButton("Play", ButtonKind::secondary, "Play from the beginning", "Space", this)),
      save(makeButton("Save", ButtonKind::secondary, "Save and go back", "Ctrl+S", this)),
      done(makeButton("Done", ButtonKind::quiet, "Go back; what was not saved is dropped", "Esc", this))
{
    meta->setFont(Appearance::font(Appearance::Text::meta));
    meta->setProperty("tone", "2");
    sound->setFont(Appearance::font(Appearance::Text::small));
    sound->setProperty("tone", "3");
    sound->setWordWrap(true);
    sound->hide();
    generate->setFont(Appearance::font(Appearance::Text::largeButton));
    play->setIconSize(playSize);
    play->setIcon(playIcon());
    connect(&Appearance::shared(), &Appearance::changed, this, [this] { play->setIcon(playIcon()); });
    connectTo(screen);
    for (QWidget* one : {static_cast<QWidget*>(generate), static_cast<QWidget*>(play),
                         static_cast<QWidget*>(save), static_cast<QWidget*>(done)}) {
        one->setFocusPolicy(Qt::TabFocus);
    }
    setFocusProxy(circleDisc);
}

DocumentScreen::~DocumentScreen()
{
    if (const auto screen = logic.lock()) {
        screen->onContentChanged = {};
        screen->onPlayingChanged = {};
    }
}

void DocumentScreen::connectTo(MIDIDocumentViewController& screen)
{
    logic = std::static_pointer_cast<MIDIDocumentViewController>(screen.shared_from_this());
    const auto hide = [this](QWidget& button, bool isHidden) { hideButton(button, isHidden); };
    screen.contentView = circleDisc->circle();
    screen.labelFile = std::make_shared<FileText>(file);
    screen.buttonGenerate = std::make_shared<ScreenButton>(generate, hide);
    screen.buttonPlay = std::make_shared<ScreenButton>(play, hide);
    screen.buttonSave = std::make_shared<ScreenButton>(save, hide);
    screen.buttonDone = std::make_shared<ScreenButton>(done, hide);
    screen.onContentChanged = [this](const std::vector<std::uint8_t>& data) { showContent(data); };
    screen.onPlayingChanged = [this] { showPlaying(); };
    const auto act = [this](void (MIDIDocumentViewController::*action)()) {
        return [this, action] {
            if (const auto there = logic.lock()) {
                ((*there).*action)();
            }
        };
    };
    connect(generate, &QPushButton::clicked, this, act(&MIDIDocumentViewController::onGenerate));
    connect(play, &QPushButton::clicked, this, act(&MIDIDocumentViewController::onButtonPlay));
    connect(save, &QPushButton::clicked, this, act(&MIDIDocumentViewController::onButtonSave));
    connect(done, &QPushButton::clicked, this, act(&MIDIDocumentViewController::onButtonDone));
    connect(circleDisc, &DiscWidget::clicked, this, act(&MIDIDocumentViewController::playOrStop));
    connect(circleDisc, &DiscWidget::positionChanged, this, &DocumentScreen::tellPosition);
}

void DocumentScreen::hideButton(QWidget& button, bool isHidden)
{
    if (isHidden && window()->focusWidget() == &button) {
        focusBefore = &button;
        circleDisc->setFocus(Qt::OtherFocusReason);
    }
    button.setVisible(!isHidden);
    if (!isHidden && focusBefore == &button) {
        focusBefore = nullptr;
        if (window()->focusWidget() == circleDisc) {
            button.setFocus(Qt::TabFocusReason); // only a key can have given it the focus
        }
    }
}

void DocumentScreen::showContent(const std::vector<std::uint8_t>& data)
{
    overview = overviewOf(data);
    meta->setText(QString::fromStdString(overview.metaLine()).replace(" · ", "  ·  "));
    legend->setParts(overview.parts);
    circleDisc->setContent(discContentOf(overview, circleDisc->content().beats));
    circleDisc->setSpoken(QString::fromStdString(overview.description()));
}

void DocumentScreen::showPlaying()
{
    const auto screen = logic.lock();
    const bool isPlaying = screen && screen->isPlaying();
    circleDisc->setPlaying(isPlaying);
    spokenBar = -1;
    if (!isPlaying) {
        circleDisc->setSpoken(QString::fromStdString(overview.description()));
    }
    Q_EMIT playingChanged();
}

void DocumentScreen::tellPosition(double beats)
{
    const int bar = static_cast<int>(beats) / DocumentOverview::beatsPerBar;
    if (!circleDisc->content().isPlaying || bar == spokenBar) {
        return;
    }
    spokenBar = bar;
    circleDisc->setAccessibleDescription(QString::fromStdString(overview.positionText(beats)));
}

void DocumentScreen::setSoundLine(const QString& line)
{
    sound->setText(line);
    sound->setVisible(!line.isEmpty());
}

void DocumentScreen::keyPressEvent(QKeyEvent* event)
{
    const auto screen = logic.lock();
    if (!screen || event->isAutoRepeat()) {
        return;
    }
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (isPlain && event->key() == Qt::Key_G) {
        screen->onGenerate();
    } else if (isPlain && event->key() == Qt::Key_Space) {
        screen->playOrStop();
    } else if (event->matches(QKeySequence::Save)) {
        screen->onButtonSave();
    } else if (isPlain && event->key() == Qt::Key_Escape) {
        screen->onButtonDone();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void DocumentScreen::resizeEvent(QResizeEvent* event)
{
    if (const auto screen = logic.lock()) {
        screen->viewWillLayoutSubviews();
    }
    QWidget::resizeEvent(event);
    arrange();
}

void DocumentScreen::arrange()
{
    const bool isWide = Appearance::isWide(width());
    const int margin = Appearance::margin(width());
    const int column = isWide ? 272 : 192;
    const int left = width() - margin - column;
    const int room = left - margin;
    const int side = std::max(120, std::min(height() - discMargin, room - (isWide ? 24 : 12)));
    circleDisc->setGeometry((left - side) / 2, (height() - side) / 2, side, side);

    file->setGeometry(left, margin - 2, column, 28);
    meta->setGeometry(left, margin + 30, column, 18);
    const int bottom = height() - margin;
    done->setGeometry(left, bottom - buttonHeight, column, buttonHeight);
    const int second = bottom - buttonHeight - 24 - buttonHeight;
    const int half = (column - 12) / 2;
    play->setGeometry(left, second, half, buttonHeight);
    save->setGeometry(left + column - half, second, half, buttonHeight);
    const int first = second - 12 - largeHeight;
    generate->setGeometry(left, first, column, largeHeight);
    const int soundTop = first - 12 - 36;
    sound->setGeometry(left, soundTop, column, 36);
    const int legendTop = margin + (isWide ? 88 : 76);
    legend->setGeometry(left, legendTop, column, std::max(0, soundTop - 12 - legendTop));
}

} // namespace volvelle
