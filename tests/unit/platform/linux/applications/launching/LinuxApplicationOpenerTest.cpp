#include "platform/linux/applications/launching/LinuxApplicationOpener.h"

#include "LaunchFiles.h"
#include "MockApplication.h"
#include "MockManager.h"
#include "Report.h"
#include "platform/linux/queue/EventLoopQueue.h"
#include "support/ManualQueue.h"
#include "support/PrivateBus.h"
#include "support/WaitUntil.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSet>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

class RecordedNotifications final : public StartupNotifications {
public:
    void begin(const StartupNotice& notice) override { begun += notice; }
    void cancel(const QString& id) override { cancelled += id; }

    QList<StartupNotice> begun;
    QStringList cancelled;
};

// The ids of this process's children, zombies included.
QSet<QByteArray> childProcesses() {
    QSet<QByteArray> children;
    const QDir threads(u"/proc/self/task"_s);
    for (const QString& thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(threads.filePath(thread + u"/children"_s));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        for (const QByteArray& child : file.readAll().split(' ')) {
            children += child;
        }
    }
    return children;
}

class LinuxApplicationOpenerTest : public testing::Test {
protected:
    InheritedState start() const {
        return {InheritedEnvironment({"HOME=" + files_.home().toUtf8(), "PATH=" + programFolders_,
                                      "XDG_ACTIVATION_TOKEN=ours", "NOTIFY_SOCKET=/x", "KEPT=yes"}),
                InheritedLimits::capture()};
    }

    void makeOpener(const QDBusConnection& bus = noBus()) {
        opener_ = std::make_unique<LinuxApplicationOpener>(
            start(), [bus] { return bus; }, notifications_, queue_);
    }

    void open(const QString& path, const QString& token = {}) {
        if (!opener_) {
            makeOpener();
        }
        opener_->open(path, token, [this](bool started) { results_ += started; });
    }

    // The argument of `done`, once it was called.
    std::optional<bool> result() {
        if (!waitUntil([this] { return !results_.isEmpty(); })) {
            return std::nullopt;
        }
        EXPECT_EQ(results_.size(), 1);
        return results_.front();
    }

    // Whether the application was started. It has ended by then.
    bool started() { return result() == true && awaitReport(reportPath()).has_value(); }

    QString reportPath() const { return files_.path(u"report"_s); }
    QString execLine(const QString& arguments = {}) const {
        return u"Exec=%1\n"_s.arg(reporterLine(reportPath(), arguments));
    }

    LaunchFiles files_;
    QByteArray programFolders_ = "/usr/bin:/bin";
    EventLoopQueue queue_;
    RecordedNotifications notifications_;
    std::unique_ptr<LinuxApplicationOpener> opener_;
    QList<bool> results_;
};

} // namespace

TEST_F(LinuxApplicationOpenerTest, AnEntryIsRun) {
    const QString path = files_.writeEntry(u"calc.desktop"_s, execLine(u"%c \"\" 'a b' %U"_s));
    open(path);
    EXPECT_TRUE(results_.isEmpty()) << "nothing happens at once";
    EXPECT_EQ(result(), true);
    const auto report = awaitReport(reportPath());
    ASSERT_TRUE(report);
    EXPECT_EQ(report->arguments, QStringList({u"The Calculator"_s, u""_s, u"a b"_s}));
    EXPECT_EQ(report->folder, QFile::encodeName(QDir(files_.home()).canonicalPath()));
    EXPECT_EQ(report->session, report->process);
}

TEST_F(LinuxApplicationOpenerTest, ItGetsTheInheritedEnvironment) {
    qputenv("AMBERQUILL_TEST_AFTER", "ours");
    const QString path = files_.writeEntry(u"calc.desktop"_s, execLine());
    open(path, u"a-token"_s);
    EXPECT_EQ(result(), true);
    const auto report = awaitReport(reportPath());
    ASSERT_TRUE(report);
    const QHash<QByteArray, QByteArray> expected{
        {"HOME", files_.home().toUtf8()},
        {"PATH", "/usr/bin:/bin"},
        {"KEPT", "yes"},
        {"PWD", files_.home().toUtf8()},
        {"XDG_ACTIVATION_TOKEN", "a-token"},
        {"DESKTOP_STARTUP_ID", "a-token"},
        {"GIO_LAUNCHED_DESKTOP_FILE", path.toUtf8()},
        {"GIO_LAUNCHED_DESKTOP_FILE_PID", QByteArray::number(report->process)}};
    EXPECT_EQ(report->variables, expected);
}

TEST_F(LinuxApplicationOpenerTest, WithoutATokenThereIsNone) {
    open(files_.writeEntry(u"calc.desktop"_s, execLine()));
    EXPECT_EQ(result(), true);
    const auto report = awaitReport(reportPath());
    ASSERT_TRUE(report);
    EXPECT_FALSE(report->variables.contains("XDG_ACTIVATION_TOKEN"));
    EXPECT_FALSE(report->variables.contains("DESKTOP_STARTUP_ID"));
}

TEST_F(LinuxApplicationOpenerTest, ABundleIsRun) {
    files_.writePropertyList(u"Calc.app/Contents/Info.plist"_s,
                             "<key>CFBundleExecutable</key><string>Calc</string>");
    files_.write(u"Calc.app/Contents/MacOS/Calc"_s,
                 "#!/bin/sh\nexec \"" + reporterPath().toUtf8() + "\" \"" + reportPath().toUtf8() + "\"\n",
                 true);
    open(files_.path(u"Calc.app"_s), u"a-token"_s);
    EXPECT_EQ(result(), true);
    const auto report = awaitReport(reportPath());
    ASSERT_TRUE(report);
    EXPECT_EQ(report->variables.value("XDG_ACTIVATION_TOKEN"), "a-token");
    EXPECT_FALSE(report->variables.contains("GIO_LAUNCHED_DESKTOP_FILE"));
}

TEST_F(LinuxApplicationOpenerTest, APageIsOpenedByXdgOpen) {
    const QString script = u"#!/bin/sh\nexec %1 \"$@\"\n"_s.arg(reporterLine(reportPath(), {}));
    files_.write(u"xdg-open"_s, script.toUtf8(), true);
    programFolders_ = files_.home().toUtf8() + ":/usr/bin:/bin";
    makeOpener();
    opener_->openPage(QUrl(u"https://example.org/1"_s), {}, [this](bool started) { results_ += started; });
    EXPECT_EQ(result(), true);
    const auto report = awaitReport(reportPath());
    ASSERT_TRUE(report);
    EXPECT_EQ(report->arguments, QStringList{u"https://example.org/1"_s});
}

TEST_F(LinuxApplicationOpenerTest, APageOfAnotherSchemeIsNotOpened) {
    makeOpener();
    opener_->openPage(QUrl(u"file:///etc/passwd"_s), {}, [this](bool started) { results_ += started; });
    EXPECT_EQ(result(), false);
}

TEST_F(LinuxApplicationOpenerTest, AnUnreadableApplicationFails) {
    open(files_.path(u"gone.desktop"_s));
    EXPECT_EQ(result(), false);
}

TEST_F(LinuxApplicationOpenerTest, AProgramThatTheKernelRefusesFails) {
    files_.write(u"text"_s, "no program\n", true);
    open(files_.writeEntry(u"calc.desktop"_s, u"Exec=%1\n"_s.arg(files_.path(u"text"_s))));
    EXPECT_EQ(result(), false);
}

TEST_F(LinuxApplicationOpenerTest, NoZombieIsLeft) {
    open(files_.writeEntry(u"calc.desktop"_s, execLine()));
    EXPECT_EQ(result(), true);
    const auto report = awaitReport(reportPath());
    ASSERT_TRUE(report);
    EXPECT_TRUE(waitUntil([&] { return !processExists(report->process); }));
}

TEST_F(LinuxApplicationOpenerTest, ManyAtOnceAllRun) {
    makeOpener();
    constexpr int count = 12;
    for (int i = 0; i < count; ++i) {
        const QString report = files_.path(u"report%1"_s.arg(i));
        open(files_.writeEntry(u"calc%1.desktop"_s.arg(i), u"Exec=%1\n"_s.arg(reporterLine(report))));
    }
    EXPECT_TRUE(waitUntil([this] { return results_.size() == count; }));
    EXPECT_EQ(results_, QList<bool>(count, true));
    for (int i = 0; i < count; ++i) {
        EXPECT_TRUE(awaitReport(files_.path(u"report%1"_s.arg(i))));
    }
}

TEST_F(LinuxApplicationOpenerTest, AStartGoesOnWhenTheOpenerIsDestroyed) {
    const QString path = files_.writeEntry(u"calc.desktop"_s, execLine());
    PrivateBus bus;
    MockManager manager(bus.connect());
    makeOpener(bus.connect());
    open(path);
    ASSERT_TRUE(waitUntil([&] { return manager.requests().size() == 1; }));
    opener_.reset();
    EXPECT_TRUE(awaitReport(reportPath()));
    EXPECT_TRUE(results_.isEmpty());
}

TEST_F(LinuxApplicationOpenerTest, AnOpenerDestroyedWhileTheDiskIsReadStartsNothing) {
    const QString path = files_.writeEntry(u"calc.desktop"_s, execLine());
    const QSet<QByteArray> before = childProcesses();
    open(path);
    opener_.reset();
    bool later = false;
    queue_.runInBackground([] {}, [&later] { later = true; });
    EXPECT_TRUE(waitUntil([&] { return later; }));
    EXPECT_TRUE(results_.isEmpty());
    EXPECT_EQ(childProcesses(), before);
}

TEST_F(LinuxApplicationOpenerTest, ItStartsInAScopeOfItsOwn) {
    PrivateBus bus;
    MockManager manager(bus.connect());
    bool ranTooEarly = false;
    manager.onRequest([&](const MockManager::Request& request) {
        const QList<uint> processes = qdbus_cast<QList<uint>>(request.properties.value(u"PIDs"_s));
        const QFileInfo program(u"/proc/%1/exe"_s.arg(processes.value(0)));
        ranTooEarly = program.symLinkTarget() != QCoreApplication::applicationFilePath();
    });
    makeOpener(bus.connect());
    open(files_.writeEntry(u"org.example.my-calc.desktop"_s, execLine()));
    ASSERT_TRUE(waitUntil([&] { return manager.requests().size() == 1; }));
    EXPECT_FALSE(ranTooEarly);
    EXPECT_TRUE(results_.isEmpty()) << "it waits for its scope";
    const MockManager::Request request = manager.requests().front();
    EXPECT_TRUE(request.unit.startsWith(u"app-amberquill-org.example.my\\x2dcalc-"_s));
    EXPECT_EQ(request.properties.value(u"Description"_s), u"The Calculator"_s);
    manager.finishJob(request.unit);
    EXPECT_EQ(result(), true);
    const auto report = awaitReport(reportPath());
    ASSERT_TRUE(report);
    EXPECT_EQ(qdbus_cast<QList<uint>>(request.properties.value(u"PIDs"_s)),
              QList<uint>{static_cast<uint>(report->process)});
}

TEST_F(LinuxApplicationOpenerTest, AHangingManagerDoesNotPreventTheStart) {
    PrivateBus bus;
    MockManager manager(bus.connect());
    manager.setAnswer(MockManager::Answer::None);
    ManualQueue time;
    LinuxApplicationOpener opener(
        start(), [&bus] { return bus.connect(); }, notifications_, time);
    opener.open(files_.writeEntry(u"calc.desktop"_s, execLine()), {},
                [this](bool started) { results_ += started; });
    time.runPosted();
    ASSERT_TRUE(waitUntil([&] { return manager.requests().size() == 1; }));
    time.advance(1);
    EXPECT_TRUE(started());
}

namespace {

class OverTheBus : public LinuxApplicationOpenerTest {
protected:
    OverTheBus() { makeOpener(bus_.connect()); }

    QString writeBusEntry(const QString& more = {}) const {
        return files_.writeEntry(u"org.example.my-calc.desktop"_s,
                                 u"DBusActivatable=true\n"_s + execLine() + more);
    }

    // All requests have been answered, so a second start would have happened by now.
    bool wasRun() {
        bool later = false;
        queue_.runInBackground([] {}, [&later] { later = true; });
        EXPECT_TRUE(waitUntil([&] { return later; }));
        return QFile::exists(reportPath());
    }

    std::unique_ptr<MockApplication> application() {
        return std::make_unique<MockApplication>(bus_.connect(), u"org.example.my-calc"_s,
                                                 u"/org/example/my_calc"_s);
    }

    PrivateBus bus_;
};

} // namespace

TEST_F(OverTheBus, AnApplicationIsActivatedAndNotRun) {
    const auto calc = application();
    open(writeBusEntry(), u"a-token"_s);
    EXPECT_EQ(result(), true);
    ASSERT_EQ(calc->activations().size(), 1);
    EXPECT_EQ(calc->activations().front().value(u"activation-token"_s), u"a-token"_s);
    EXPECT_FALSE(wasRun());
}

TEST_F(OverTheBus, AnApplicationThatRefusesIsNotRun) {
    const auto calc = application();
    calc->failWith(u"org.freedesktop.DBus.Error.Failed"_s);
    open(writeBusEntry());
    EXPECT_EQ(result(), false);
    EXPECT_FALSE(wasRun());
}

TEST_F(OverTheBus, AnApplicationUnknownToTheBusIsRun) {
    open(writeBusEntry());
    EXPECT_TRUE(started());
}

TEST_F(OverTheBus, AnApplicationThatTheBusCannotStartIsRun) {
    bus_.makeActivatable("org.example.my-calc", "/bin/false");
    open(writeBusEntry());
    EXPECT_TRUE(started());
}

TEST_F(OverTheBus, AnApplicationThatCannotBeActivatedOrRunFails) {
    open(files_.writeEntry(u"org.example.my-calc.desktop"_s, u"DBusActivatable=true\n"_s));
    EXPECT_EQ(result(), false);
}

TEST_F(LinuxApplicationOpenerTest, AStartIsAnnouncedIfTheEntrySupportsIt) {
    const QString path = files_.writeEntry(
        u"calc.desktop"_s, execLine() + u"StartupNotify=true\nIcon=calc\nStartupWMClass=Calc\n"_s);
    open(path, u"an-id_TIME7"_s);
    EXPECT_TRUE(started());
    ASSERT_EQ(notifications_.begun.size(), 1);
    const StartupNotice& notice = notifications_.begun.front();
    EXPECT_EQ(notice.id, u"an-id_TIME7"_s);
    EXPECT_EQ(notice.name, u"The Calculator"_s);
    EXPECT_EQ(notice.icon, u"calc"_s);
    EXPECT_EQ(notice.program, reporterPath());
    EXPECT_EQ(notice.windowClass, u"Calc"_s);
    EXPECT_EQ(notice.entryPath, path);
    EXPECT_TRUE(notifications_.cancelled.isEmpty());
}

TEST_F(LinuxApplicationOpenerTest, OtherStartsAreNotAnnounced) {
    open(files_.writeEntry(u"calc.desktop"_s, execLine()), u"an-id_TIME7"_s);
    EXPECT_TRUE(started());
    EXPECT_TRUE(notifications_.begun.isEmpty());
}

TEST_F(LinuxApplicationOpenerTest, WithoutATokenNothingIsAnnounced) {
    open(files_.writeEntry(u"calc.desktop"_s, execLine() + u"StartupNotify=true\n"_s));
    EXPECT_TRUE(started());
    EXPECT_TRUE(notifications_.begun.isEmpty());
}

TEST_F(LinuxApplicationOpenerTest, AFailedStartIsCancelled) {
    files_.write(u"text"_s, "no program\n", true);
    open(files_.writeEntry(u"calc.desktop"_s, u"StartupNotify=true\nExec=%1\n"_s.arg(files_.path(u"text"_s))),
         u"an-id_TIME7"_s);
    EXPECT_EQ(result(), false);
    EXPECT_EQ(notifications_.begun.size(), 1);
    EXPECT_EQ(notifications_.cancelled, QStringList{u"an-id_TIME7"_s});
}
