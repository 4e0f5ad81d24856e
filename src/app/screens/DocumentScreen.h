#pragma once

#include "app/control/DocumentOverview.h"
#include "app/control/MIDIDocumentViewController.h"
#include "app/screens/DiscWidget.h"
#include "app/screens/DocumentColumn.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QWidget>

#include <memory>

namespace volvelle {

// The layout of a document's screen: the disc on the left, a column on the right. Keys: G generates, the
// space bar plays or stops unless a button has the focus, Ctrl+S saves, Esc is Done; a key that is held does
// nothing more. [main]
class DocumentScreen : public QWidget {
    Q_OBJECT

public:
    // Connects itself to `screen`, which is kept alive by who presents it.
    explicit DocumentScreen(MIDIDocumentViewController& screen, QWidget* parent = nullptr);
    ~DocumentScreen() override;

    // One quiet line below the legend, empty for none.
    void setSoundLine(const QString& line);

    DiscWidget* disc() const { return circleDisc; }

Q_SIGNALS:
    // The music began or ended.
    void playingChanged();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void connectTo(MIDIDocumentViewController& screen);
    void hideButton(QWidget& button, bool isHidden);
    void showContent(const std::vector<std::uint8_t>& data);
    void showPlaying();
    void arrange();
    void tellPosition(double beats);

    std::weak_ptr<MIDIDocumentViewController> logic;
    DocumentOverview overview;
    DiscWidget* circleDisc;
    FileLabel* file;
    QLabel* meta;
    Legend* legend;
    QLabel* sound;
    QPushButton* generate;
    QPushButton* play;
    QPushButton* save;
    QPushButton* done;
    QPointer<QWidget> focusBefore; // the button that had the focus when it was hidden
    int spokenBar = -1;
};

} // namespace volvelle
