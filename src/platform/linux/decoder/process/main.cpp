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

// Two such processes are what the launcher has the processors do: libraries get no more of them. Qt's threads
// need no descriptors of GLib's, one of which would stay.
void limitThreads() {
    ::setenv("RAYON_NUM_THREADS", "1", 1);
    ::setenv("QT_NO_GLIB", "1", 1);
    QThreadPool::globalInstance()->setMaxThreadCount(1);
}

int statusOf(DecoderExit exit) {
    return static_cast<int>(exit);
}

// Leaves the process the files that drawing text takes. False: on this system it can only be left none or
// all.
bool keepFontFiles() {
    // What Pango starts threads for comes after, so that they are kept from all other files too.
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
