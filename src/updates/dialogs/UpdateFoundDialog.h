#pragma once

#include <QDialog>
#include <functional>

class QPushButton;

namespace amberquill {

// The user's answer to a new version.
enum class UpdateChoice {
    Skip,    // never offer it again
    Later,   // offer it again another time
    Install, // download and install it
};

// The texts come from the feed and are shown as plain text.
struct FoundUpdate {
    QString version;
    QString installedVersion;
    QString notes;               // empty: there are none
    bool canInstall = true;      // the program can replace itself
    bool hasPage = false;        // there is a page to open
    bool isUserInitiated = true; // the user asked for the check
};

// Shows a new version and asks what to do. Closing the dialog and opening the version's page mean Later.
class UpdateFoundDialog final : public QDialog {
    Q_OBJECT

public:
    struct Answers {
        std::function<void(UpdateChoice)> chosen; // called once, after the dialog was closed
        std::function<void()> openPage;           // called before, while the dialog is visible
    };

    UpdateFoundDialog(const FoundUpdate& update, const Answers& answers);

private:
    void arrange(const FoundUpdate& update, const Answers& answers);
    [[nodiscard]] QPushButton* button(const QString& title, UpdateChoice choice);

    UpdateChoice choice_ = UpdateChoice::Later;
};

} // namespace amberquill
