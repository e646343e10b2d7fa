// amberquill-icons: decodes icons for the launcher in a sandboxed process.

#include "platform/linux/decoder/channel/DecodingMessages.h"
#include "platform/linux/decoder/pictures/IconDecoder.h"
#include "platform/linux/decoder/process/Landlock.h"
#include "platform/linux/decoder/process/RequestLoop.h"
#include "platform/linux/decoder/process/Sandbox.h"

#include <QThreadPool>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

using namespace amberquill::desktop;

namespace {

bool isMessageSocket(int descriptor) {
    int type = 0;
    socklen_t size = sizeof type;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_SEQPACKET;
}

// The launcher runs two such processes, so libraries use as few threads as possible. Qt's threads do not use
// GLib, which would keep a descriptor open.
void limitThreads() {
    ::setenv("RAYON_NUM_THREADS", "1", 1);
    ::setenv("QT_NO_GLIB", "1", 1);
    QThreadPool::globalInstance()->setMaxThreadCount(1);
}

int statusOf(DecoderExit exit) {
    return static_cast<int>(exit);
}

// Restricts the process to reading the files that text needs. False: the system has no such restriction.
bool allowFontFiles() {
    // Before Pango starts threads, so that they are restricted too.
    if (!restrictFiles(fontPaths())) {
        return false;
    }
    prepareFonts();
    return true;
}

} // namespace

// Exits without destructors: those of libraries would need what the process has given up.
int main(int argc, char** argv) {
    if (!isMessageSocket(decoderSocket)) {
        static_cast<void>(std::fputs(
            "amberquill-icons decodes icons for amberquill, which starts it by itself.\n", stderr));
        return statusOf(DecoderExit::NotFromLauncher);
    }
    if (!resetInheritedState()) {
        ::_exit(statusOf(DecoderExit::NoSandbox));
    }
    preferOutOfMemoryKill();
    limitHeap();
    limitThreads();
    prepareDecoders();
    const bool wantsFonts = argc > 1 && std::strcmp(argv[1], decoderFontsArgument) == 0;
    const bool readsFonts = wantsFonts && allowFontFiles();
    if (!readsFonts) {
        // Without Landlock the system call filter still denies files.
        static_cast<void>(restrictFiles({}));
    }
    if (!enterSandbox(readsFonts ? FileReading::Allowed : FileReading::Denied)) {
        ::_exit(statusOf(DecoderExit::NoSandbox));
    }
    exitWhenSocketCloses(decoderSocket);
    // If fonts are wanted but cannot be read, text is left out.
    const auto fonts = wantsFonts ? Fonts::Present : Fonts::Absent;
    const auto decoding = [fonts](const QByteArray& bytes, int edge) {
        auto icon = decodedIcon(bytes, edge, fonts);
        QThreadPool::globalInstance()->waitForDone(); // and frees its threads' memory
        return icon;
    };
    const auto end = serveRequests(decoderSocket, decoding, {decoderProcessorBudget, pictureProcessorBudget});
    ::_exit(statusOf(end == RequestLoopEnd::Done ? DecoderExit::Done : DecoderExit::InvalidRequest));
}
