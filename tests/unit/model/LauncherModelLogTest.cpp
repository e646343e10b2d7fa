#include "support/DragFixture.h"
#include "support/LogRecorder.h"

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class LauncherModelLog : public DragFixture {
protected:
    static bool hasLogged(const char* text) {
        return LogRecorder::lines().join(u'\n').contains(QLatin1String(text));
    }

    const LogRecorder log_{u"amberquill.model.debug=true"_s};
};

} // namespace

TEST_F(LauncherModelLog, ALayoutThatDoesNotDecode) {
    files_.addFile(layoutPath, "[{");
    makeModel();
    EXPECT_TRUE(hasLogged("/data/Amberquill/layout.json\" does not decode"));
}

TEST_F(LauncherModelLog, ARefusedImport) {
    LauncherModel& model = shownWith(3);
    EXPECT_TRUE(model.importLayout("[]"));
    EXPECT_TRUE(hasLogged("import refused: not a layout file"));
}

TEST_F(LauncherModelLog, TheCauseThatCancelledADrag) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    model.pointerCancelled();
    EXPECT_TRUE(hasLogged("drag of \"a:/Applications/1.app\" cancelled by the loss of the pointer"));
    liftIcon(0);
    model.willHide();
    EXPECT_TRUE(hasLogged("cancelled by hiding the launcher"));
    LogRecorder::lines().clear();
    model.willHide();
    EXPECT_FALSE(hasLogged("cancelled")) << "no drag";
}

TEST_F(LauncherModelLog, ApplicationsThatComeAndLeave) {
    LauncherModel& model = shownAs(appsTo(3));
    model.applyScan(apps(2));
    EXPECT_TRUE(hasLogged("left the layout: QList(\"/Applications/3.app\")"));
    model.applyScan(apps(3));
    EXPECT_TRUE(hasLogged("came or came back: QList(\"/Applications/3.app\")"));
}

TEST_F(LauncherModelLog, AnApplicationThatStaysAlthoughTheScanLacksIt) {
    LauncherModel& model = shownAs(appsTo(3));
    installed_ = apps(2);
    model.refreshApps();
    queue_.runPosted();
    EXPECT_TRUE(hasLogged("\"/Applications/3.app\" was not found; it stays"));
}

TEST_F(LauncherModelLog, ALateLayout) {
    layoutIsLate_ = true;
    LauncherModel& model = shownWith(3);
    files_.addFile(layoutPath, encodeItems(appsTo(2)));
    model.takeLateLayout(LayoutStore::read(files_, u"/data"_s));
    EXPECT_TRUE(hasLogged("late layout taken: 2 items"));
    LauncherModel& other = shownWith(3);
    other.takeLateLayout({});
    EXPECT_TRUE(hasLogged("late layout not taken: there is none"));
}

TEST_F(LauncherModelLog, ACopyThatCannotBeWritten) {
    LauncherModel& model = shownAs(appsTo(3));
    files_.refuseWrites(true);
    model.resetLayout();
    model.flushSaves();
    EXPECT_TRUE(hasLogged("no copy of the layout"));
}
