#pragma once

#include <QDialog>
#include <functional>

class QPushButton;

namespace amberquill {

// What a person wants to be done with a new version.
enum class UpdateChoice {
    Skip,    // never offer it again
    Later,   // offer it again another time
    Install, // fetch it and put it in place
};

// A new version, as a person is told of it. All texts come from outside and are shown as they are.
struct FoundUpdate {
    QString version;
    QString ownVersion;
    QString notes;           // plain text; empty: there are none
    bool canInstall = true;  // the program can replace itself
    bool hasPage = false;    // there is a page that can be opened instead
    bool wasAskedFor = true; // by a person, who waits for the answer
};

// Tells of a new version and asks what to do with it. Closing it any other way than by one of its buttons
// means later, and so does opening the page that has it.
class UpdateFoundDialog final : public QDialog {
    Q_OBJECT

public:
    struct Answers {
        std::function<void(UpdateChoice)> chosen; // called once, when the dialog has been closed
        std::function<void()> openPage;           // before that, while the dialog is still there
    };

    UpdateFoundDialog(const FoundUpdate& update, const Answers& answers);

private:
    void arrange(const FoundUpdate& update, const Answers& answers);
    [[nodiscard]] QPushButton* button(const QString& title, UpdateChoice choice);

    UpdateChoice choice_ = UpdateChoice::Later;
};

} // namespace amberquill
