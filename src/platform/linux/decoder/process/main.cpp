// Decodes icons for the launcher, which starts it, in a process that can do nothing else.

#include "platform/linux/decoder/channel/DecodingMessages.h"
#include "platform/linux/decoder/pictures/DecoderPreparation.h"
#include "platform/linux/decoder/pictures/IconDecoder.h"
#include "platform/linux/decoder/process/Confinement.h"
#include "platform/linux/decoder/process/FontPaths.h"
#include "platform/linux/decoder/process/Landlock.h"
#include "platform/linux/decoder/process/Serving.h"

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

// The launcher runs two such processes, so libraries start as few threads as they can. Qt's threads do
// without GLib, of whose descriptors one would stay open.
void limitThreads() {
    ::setenv("RAYON_NUM_THREADS", "1", 1);
    ::setenv("QT_NO_GLIB", "1", 1);
    QThreadPool::globalInstance()->setMaxThreadCount(1);
}

int statusOf(DecoderExit exit) {
    return static_cast<int>(exit);
}

// Lets the process read the files that drawing text takes, and no others. False: this system cannot allow
// some files only.
bool keepFontFiles() {
    // Before Pango starts threads, so that the same holds for them.
    if (!restrictFiles(fontPaths())) {
        return false;
    }
    prepareFonts();
    return true;
}

} // namespace

// Ends without destructors: the libraries' would need what the process has given up.
int main(int argc, char** argv) {
    if (!isMessageSocket(decoderSocket)) {
        static_cast<void>(std::fputs(
            "amberquill-icons decodes icons for amberquill, which starts it by itself.\n", stderr));
        return statusOf(DecoderExit::ByHand);
    }
    if (!dropInheritance()) {
        ::_exit(statusOf(DecoderExit::NotConfined));
    }
    offerMemoryFirst();
    keepLittleMemory();
    limitThreads();
    prepareDecoders();
    const bool wantsFonts = argc > 1 && std::strcmp(argv[1], decoderFontsArgument) == 0;
    const bool readsFonts = wantsFonts && keepFontFiles();
    if (!readsFonts) {
        // Where the kernel has no Landlock, the system calls are refused all the same.
        static_cast<void>(restrictFiles({}));
    }
    if (!confine(readsFonts ? FileReading::Allowed : FileReading::Denied)) {
        ::_exit(statusOf(DecoderExit::NotConfined));
    }
    endWithOtherEnd(decoderSocket);
    // Where fonts are wanted but cannot be read, text is left out.
    const auto fonts = wantsFonts ? Fonts::Present : Fonts::Absent;
    const auto decoding = [fonts](const QByteArray& bytes, int edge) {
        auto icon = decodedIcon(bytes, edge, fonts);
        QThreadPool::globalInstance()->waitForDone(); // and lets go of what its threads have
        return icon;
    };
    const auto end = serve(decoderSocket, decoding, {decoderEndurance, longestDecoding});
    ::_exit(statusOf(end == ServingEnd::Done ? DecoderExit::Done : DecoderExit::SenselessRequest));
}
