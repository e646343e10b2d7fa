#include "platform/linux/installation/AppImageInstaller.h"

#include "support/OrdinaryUser.h"
#include "support/TemporaryTree.h"
#include "support/TestPaths.h"
#include "support/WaitUntil.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace amberquill;
using amberquill::desktop::AppImageInstaller;
using amberquill::desktop::installKindOf;
using Step = AppImageInstaller::Step;

namespace {

constexpr mode_t mode = 0751;

// A program that prints its version and is longer than one copied block.
QByteArray programOf(const QByteArray& version) {
    return "#!/bin/sh\necho 'Amberquill " + version + "'\nexit 0\n" + QByteArray(1'000'000, '#') + version;
}

class AppImageInstallerTest : public testing::Test {
protected:
    AppImageInstallerTest() {
        tree.write("images/Amberquill.AppImage", oldProgram);
        ::chmod(image().toUtf8().constData(), mode);
        tree.makeFolder("mount/usr/bin");
    }

    [[nodiscard]] QString image() const { return tree.path("images/Amberquill.AppImage"); }
    [[nodiscard]] QString program() const { return tree.path("mount/usr/bin/amberquill"); }

    [[nodiscard]] std::vector<QByteArray> environment(const QString& imagePath) const {
        return {"PATH=/usr/bin:/bin", "APPIMAGE=" + imagePath.toUtf8(),
                "APPDIR=" + tree.path("mount").toUtf8()};
    }

    [[nodiscard]] AppImageInstaller installer() const { return {environment(image()), program()}; }

    [[nodiscard]] QStringList images() const {
        return QDir(tree.path("images")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    void expectOldAlone() const {
        EXPECT_EQ(tree.read("images/Amberquill.AppImage"), oldProgram);
        EXPECT_EQ(images(), QStringList{QStringLiteral("Amberquill.AppImage")});
    }

    [[nodiscard]] mode_t modeOfImage() const {
        struct stat status = {};
        ::lstat(image().toUtf8().constData(), &status);
        return status.st_mode & 07777U;
    }

    [[nodiscard]] int runHelper(const QStringList& arguments) const {
        QProcess process;
        QStringList variables;
        for (const QByteArray& entry : environment(image())) {
            variables += QString::fromUtf8(entry);
        }
        process.setEnvironment(variables);
        process.start(testProgram(QStringLiteral("replacing_program")), arguments);
        EXPECT_TRUE(process.waitForFinished());
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    TemporaryTree tree;
    QByteArray oldProgram = programOf("1.0.0");
    QByteArray newProgram = programOf("1.1.0");
    QString newFile = tree.write("cache/new", newProgram);
};

} // namespace

TEST_F(AppImageInstallerTest, ReplacesTheRunningImage) {
    AppImageInstaller installing = installer();
    EXPECT_EQ(installing.kind(), InstallKind::Image);
    EXPECT_EQ(installing.stage(newFile), QStringLiteral("1.1.0"));
    EXPECT_EQ(tree.read("images/Amberquill.AppImage"), oldProgram);
    EXPECT_TRUE(installing.replace());
    EXPECT_EQ(tree.read("images/Amberquill.AppImage"), newProgram);
    EXPECT_EQ(modeOfImage(), mode);
    EXPECT_EQ(images(), QStringList{QStringLiteral("Amberquill.AppImage")});
    EXPECT_EQ(tree.read("cache/new"), newProgram);
}

TEST_F(AppImageInstallerTest, ALinkToTheImageStaysALink) {
    const QString link = tree.link("links/launcher", "../images/Amberquill.AppImage");
    AppImageInstaller installing(environment(link), program());
    EXPECT_EQ(installing.kind(), InstallKind::Image);
    ASSERT_TRUE(installing.stage(newFile) && installing.replace());
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(tree.read("images/Amberquill.AppImage"), newProgram);
    EXPECT_EQ(tree.read("links/launcher"), newProgram);
}

TEST_F(AppImageInstallerTest, ADiscardedImageLeavesNoFile) {
    AppImageInstaller installing = installer();
    ASSERT_TRUE(installing.stage(newFile));
    installing.discard();
    expectOldAlone();
    EXPECT_FALSE(installing.replace());
    expectOldAlone();
}

TEST_F(AppImageInstallerTest, AProgramWithoutAVersionIsNotStaged) {
    AppImageInstaller installing = installer();
    for (const char* const text :
         {"#!/bin/sh\necho 'Another 1.1.0'\n", "#!/bin/sh\necho 'Amberquill '\n",
          "#!/bin/sh\necho 'Amberquill 1.1.0'\nexit 1\n", "#!/bin/sh\nexec yes 'Amberquill 1.1.0'\n",
          "#!/bin/sh\necho 'Amberquill 1.1.0'\nkill -9 $$\n", "#!/no/such/shell\n", "no program at all",
          ""}) {
        EXPECT_EQ(installing.stage(tree.write("cache/other", text)), std::nullopt) << text;
        expectOldAlone();
    }
}

TEST_F(AppImageInstallerTest, OtherThanFilesAreNotStaged) {
    AppImageInstaller installing = installer();
    EXPECT_EQ(installing.stage(tree.path("cache/missing")), std::nullopt);
    EXPECT_EQ(installing.stage(tree.path("cache")), std::nullopt);
    EXPECT_EQ(installing.stage(tree.link("cache/link", newFile.toStdString())), std::nullopt);
    expectOldAlone();
}

TEST_F(AppImageInstallerTest, AFileWhoseLengthChangesDuringTheCopyIsNotStaged) {
    for (const qint64 change : {-1, 1}) {
        const QString file = tree.write("cache/changing", newProgram);
        AppImageInstaller installing(environment(image()), program(), [&](Step step) {
            if (step == Step::Created) {
                EXPECT_TRUE(QFile::resize(file, newProgram.size() + change));
            }
        });
        EXPECT_EQ(installing.stage(file), std::nullopt) << change;
        expectOldAlone();
    }
}

TEST_F(AppImageInstallerTest, TheNewProgramIsRunWithoutTheOldImagesEnvironment) {
    const QString asked = tree.path("asked");
    const QByteArray text = "#!/bin/sh\necho \"${APPIMAGE-}${APPDIR-}$PATH\" >'" + asked.toUtf8() +
                            "'\necho 'Amberquill 1.1.0'\n";
    EXPECT_EQ(installer().stage(tree.write("cache/other", text)), QStringLiteral("1.1.0"));
    EXPECT_EQ(tree.read("asked"), "/usr/bin:/bin\n");
}

TEST_F(AppImageInstallerTest, AnotherProgramsImageIsNotTouched) {
    for (const QString& elsewhere :
         {QStringLiteral("/usr/bin/amberquill"), tree.path("mount-of-mine/amberquill"), QString()}) {
        AppImageInstaller installing(environment(image()), elsewhere);
        EXPECT_NE(installing.kind(), InstallKind::Image);
        EXPECT_EQ(installing.stage(newFile), std::nullopt);
        EXPECT_FALSE(installing.replace());
        EXPECT_FALSE(installing.startAgainAfterExit());
    }
    expectOldAlone();
}

TEST_F(AppImageInstallerTest, AnImageThatTheUserMayNotReplaceIsNotAnImage) {
    const auto kindOf = [this](const QString& path) {
        return AppImageInstaller(environment(path), program()).kind();
    };
    EXPECT_EQ(kindOf(tree.path("images")), InstallKind::Other);
    EXPECT_EQ(kindOf(tree.path("missing")), InstallKind::Other);
    EXPECT_EQ(kindOf(QStringLiteral("images/Amberquill.AppImage")), InstallKind::Other);
    EXPECT_EQ(kindOf(QString()), InstallKind::Other);
    EXPECT_EQ(kindOf(image()), InstallKind::Image);
    ::chmod(tree.path("images").toUtf8().constData(), 0555);
    ::chmod(tree.path().toUtf8().constData(), 0755);
    if (::geteuid() == 0) {
        const OrdinaryUser other; // not the file's owner
        EXPECT_EQ(kindOf(image()), InstallKind::Other);
    } else {
        EXPECT_EQ(kindOf(image()), InstallKind::Other);
    }
    ::chmod(tree.path("images").toUtf8().constData(), 0755);
}

TEST_F(AppImageInstallerTest, KilledAtAnyStepItLeavesTheOldOrTheNewProgram) {
    for (const Step step :
         {Step::Created, Step::HalfCopied, Step::Copied, Step::Flushed, Step::AskedVersion, Step::Renamed}) {
        tree.write("images/Amberquill.AppImage", oldProgram);
        EXPECT_EQ(runHelper({QStringLiteral("replace"), program(), newFile,
                             QString::number(static_cast<int>(step))}),
                  -1)
            << "not killed at step " << static_cast<int>(step);
        EXPECT_EQ(tree.read("images/Amberquill.AppImage"), step == Step::Renamed ? newProgram : oldProgram)
            << "killed at step " << static_cast<int>(step);
        EXPECT_EQ(modeOfImage(), mode);
        // Leftover files do not hinder the next replacement, which removes them.
        EXPECT_EQ(runHelper({QStringLiteral("replace"), program(), newFile}), 0);
        EXPECT_EQ(tree.read("images/Amberquill.AppImage"), newProgram);
        EXPECT_EQ(images(), QStringList{QStringLiteral("Amberquill.AppImage")});
    }
}

TEST_F(AppImageInstallerTest, TheProgramIsRestartedAfterTheOldOneHasEnded) {
    tree.write("images/Amberquill.AppImage",
               "#!/bin/sh\necho \"$0 ${APPIMAGE-}${APPDIR-}$PATH\" >'" + tree.path("said").toUtf8() +
                   "'\nmv '" + tree.path("said").toUtf8() + "' '" + tree.path("started").toUtf8() + "'\n");
    QProcess old;
    QStringList variables;
    for (const QByteArray& entry : environment(image())) {
        variables += QString::fromUtf8(entry);
    }
    old.setEnvironment(variables);
    old.start(testProgram(QStringLiteral("replacing_program")), {QStringLiteral("restart"), program()});
    ASSERT_TRUE(old.waitForReadyRead());
    QProcess::execute(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), QStringLiteral("true; exit 0")});
    EXPECT_FALSE(QFileInfo::exists(tree.path("started")));
    old.closeWriteChannel();
    ASSERT_TRUE(old.waitForFinished());
    ASSERT_EQ(old.exitCode(), 0);
    ASSERT_TRUE(waitUntil([this] { return QFileInfo::exists(tree.path("started")); }));
    EXPECT_EQ(tree.read("started"), image().toUtf8() + " /usr/bin:/bin\n");
}

TEST(InstallKind, IsThePackageManagersInSystemFolders) {
    for (const char* const program :
         {"/usr/bin/amberquill", "/usr/lib/amberquill/amberquill", "/app/bin/amberquill",
          "/snap/amberquill/1/bin/amberquill", "/nix/store/abc-amberquill/bin/amberquill"}) {
        EXPECT_EQ(installKindOf(QString::fromLatin1(program)), InstallKind::PackageManager) << program;
    }
    for (const char* const program : {"/usr/local/bin/amberquill", "/home/me/.local/bin/amberquill",
                                      "/opt/amberquill/amberquill", "/application/amberquill", ""}) {
        EXPECT_EQ(installKindOf(QString::fromLatin1(program)), InstallKind::Other) << program;
    }
}
