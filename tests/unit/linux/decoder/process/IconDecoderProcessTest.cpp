#include "StartedDecoder.h"

#include "support/IconFiles.h"

#include <QFile>
#include <QRegularExpression>
#include <filesystem>
#include <map>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

const QByteArray blueSquare = svg(R"(<rect width="100" height="100" fill="#0000ff"/>)");

// What the kernel says of a process, by its name in /proc/PID/status.
std::string statusEntry(pid_t process, const std::string& name) {
    QFile file(QStringLiteral("/proc/%1/status").arg(process));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QRegularExpression line(QStringLiteral("^%1:\\s*(.*)$").arg(QString::fromStdString(name)),
                                  QRegularExpression::MultilineOption);
    return line.match(QString::fromUtf8(file.readAll())).captured(1).toStdString();
}

// Where each descriptor of a process leads.
std::map<int, std::string> descriptorsOf(pid_t process) {
    std::map<int, std::string> descriptors;
    for (const auto& entry :
         std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/fd")) {
        descriptors[std::stoi(entry.path().filename())] = std::filesystem::read_symlink(entry.path());
    }
    return descriptors;
}

} // namespace

TEST(IconDecoderProcess, PicturesComeBackAsTheFilesHaveThem) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    const auto fromPng = decoder.decoded(png(32, 32), 48);
    ASSERT_EQ(fromPng.size(), QSize(48, 48));
    EXPECT_EQ(fromPng.pixelColor(24, 24), QColor(Qt::red));
    const auto fromSvg = decoder.decoded(blueSquare, 40);
    ASSERT_EQ(fromSvg.size(), QSize(40, 40));
    EXPECT_EQ(fromSvg.pixelColor(0, 39), QColor(Qt::blue));
    EXPECT_EQ(fromSvg.pixelColor(39, 0), QColor(Qt::blue));
}

TEST(IconDecoderProcess, AFileThatIsNoIconGivesNoPicture) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    ASSERT_TRUE(decoder.ask("no picture", 48));
    EXPECT_EQ(decoder.answer(), (DecodingAnswer{DecodingOutcome::NoPicture, 48, false}));
    EXPECT_FALSE(decoder.decoded(png(8, 8), 48).isNull());
}

TEST(IconDecoderProcess, TheKernelRefusesItEverythingBeforeTheFirstRequest) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    EXPECT_EQ(statusEntry(decoder.process(), "Seccomp"), "2");
    EXPECT_EQ(statusEntry(decoder.process(), "NoNewPrivs"), "1");
}

TEST(IconDecoderProcess, ItHasNoDescriptorsButTheSocketAndTwoOutputsThatLeadNowhere) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    const auto before = descriptorsOf(decoder.process());
    ASSERT_EQ(before.size(), 3U);
    EXPECT_TRUE(before.at(decoderSocket).starts_with("socket:"));
    EXPECT_EQ(before.at(STDOUT_FILENO), "/dev/null");
    EXPECT_EQ(before.at(STDERR_FILENO), "/dev/null");
    EXPECT_FALSE(decoder.decoded(png(32, 32), 48).isNull());
    EXPECT_FALSE(decoder.decoded(blueSquare, 48).isNull());
    EXPECT_EQ(descriptorsOf(decoder.process()), before);
}

TEST(IconDecoderProcess, ItEndsWithTheLauncher) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    decoder.hangUp();
    const int status = decoder.status();
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), static_cast<int>(DecoderExit::Done));
}
