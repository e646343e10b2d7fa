// Decodes icons for the launcher, which starts it, in a process that can do nothing else.

#include "platform/linux/decoder/channel/DecodingMessages.h"
#include "platform/linux/decoder/pictures/DecoderPreparation.h"
#include "platform/linux/decoder/pictures/IconDecoder.h"
#include "platform/linux/decoder/process/Confinement.h"
#include "platform/linux/decoder/process/Landlock.h"
#include "platform/linux/decoder/process/Serving.h"

#include <QThreadPool>
#include <cstdio>
#include <cstdlib>
#include <sys/socket.h>
#include <unistd.h>

using namespace amberquill::desktop;

namespace {

bool isMessageSocket(int descriptor) {
    int type = 0;
    socklen_t size = sizeof type;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_SEQPACKET;
}

// Two such processes are what the launcher has the processors do: libraries get no more of them, nor do idle
// threads stay.
void limitThreads() {
    ::setenv("RAYON_NUM_THREADS", "1", 1);
    QThreadPool::globalInstance()->setMaxThreadCount(1);
    QThreadPool::globalInstance()->setExpiryTimeout(0);
}

int statusOf(DecoderExit exit) {
    return static_cast<int>(exit);
}

} // namespace

// Ends without destructors: the libraries' would need what the process has given up.
int main() {
    if (!isMessageSocket(decoderSocket)) {
        std::fputs("amberquill-icons decodes icons for amberquill, which starts it by itself.\n", stderr);
        return statusOf(DecoderExit::ByHand);
    }
    if (!dropInheritance()) {
        ::_exit(statusOf(DecoderExit::NotConfined));
    }
    keepLittleMemory();
    limitThreads();
    prepareDecoders();
    static_cast<void>(restrictFiles({})); // a kernel without it has the system calls refused all the same
    if (!confine(FileReading::Denied)) {
        ::_exit(statusOf(DecoderExit::NotConfined));
    }
    endWithOtherEnd(decoderSocket);
    const auto decode = [](const QByteArray& bytes, int edge) {
        return decodedIcon(bytes, edge, Fonts::Present).image;
    };
    const auto end = serve(decoderSocket, decode, {decoderEndurance, longestDecoding});
    ::_exit(statusOf(end == ServingEnd::Done ? DecoderExit::Done : DecoderExit::SenselessRequest));
}
