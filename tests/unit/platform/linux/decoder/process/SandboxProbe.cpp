// Enters the decoder's sandbox and tries one operation:
//
//     sandbox_probe free|confined|reading NAME FOLDER
//
// "free" enters no sandbox, to show that the operation works without. With "reading", the files in
// FOLDER/fonts may be read. FOLDER has the files `file` and `fonts/font`.

#include "SandboxProbe.h"

#include "platform/linux/decoder/process/Landlock.h"
#include "platform/linux/decoder/process/RequestLoop.h"
#include "platform/linux/decoder/process/Sandbox.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <map>
#include <netinet/in.h>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

using namespace amberquill::desktop;

namespace {

// Opened before the sandbox.
struct Prepared {
    std::string file;
    std::string fonts;
    std::string font;
    pid_t parent = ::getppid();
    int udp = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    int memory = ::memfd_create("probe", MFD_CLOEXEC);
    void* page = ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    std::array<int, 2> pair = {};

    explicit Prepared(const std::string& folder)
        : file(folder + "/file")
        , fonts(folder + "/fonts")
        , font(fonts + "/font") {
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair.data()) != 0) {
            std::abort();
        }
    }

    [[nodiscard]] sockaddr_in here() const {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_port = htons(9);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return address;
    }
};

bool reads(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    char byte = 0;
    return file >= 0 && ::read(file, &byte, 1) == 1;
}

bool isThere(void* memory) {
    return memory != MAP_FAILED;
}

bool allocates(std::size_t bytes) {
    return isThere(
        ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
}

using Attempts = std::map<std::string, std::function<bool()>, std::less<>>;

Attempts attemptsAtFiles(const Prepared& prepared) {
    return {
        {"read a file", [&] { return reads("/etc/passwd"); }},
        {"read a font", [&] { return reads(prepared.font); }},
        {"list the fonts", [&] { return ::opendir(prepared.fonts.c_str()) != nullptr; }},
        {"list a folder", [&] { return ::opendir("/etc") != nullptr; }},
        {"write a file", [&] { return ::open(prepared.file.c_str(), O_WRONLY | O_CLOEXEC) >= 0; }},
        {"write a font", [&] { return ::open(prepared.font.c_str(), O_RDWR | O_CLOEXEC) >= 0; }},
        {"empty a font", [&] { return ::open(prepared.font.c_str(), O_RDONLY | O_TRUNC | O_CLOEXEC) >= 0; }},
        {"make a font",
         [&] { return ::open((prepared.font + "2").c_str(), O_RDONLY | O_CREAT | O_CLOEXEC, 0600) >= 0; }},
        {"make a nameless file",
         [&] { return ::open(prepared.fonts.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600) >= 0; }},
        {"remove a file", [&] { return ::unlink(prepared.file.c_str()) == 0; }},
        {"rename a file",
         [&] { return ::rename(prepared.file.c_str(), (prepared.file + "2").c_str()) == 0; }},
        {"link a file", [&] { return ::link(prepared.file.c_str(), (prepared.file + "2").c_str()) == 0; }},
        {"make a folder", [&] { return ::mkdir((prepared.file + "2").c_str(), 0700) == 0; }},
        {"change a mode", [&] { return ::chmod(prepared.file.c_str(), 0600) == 0; }},
        {"enter a folder", [&] { return ::chdir("/") == 0; }},
        {"make memory with a descriptor", [&] { return ::memfd_create("x", MFD_CLOEXEC) >= 0; }},
        {"resize memory with a descriptor", [&] { return ::ftruncate(prepared.memory, 1) == 0; }},
        {"copy a descriptor", [&] { return ::dup(prepared.memory) >= 0; }},
        {"ask a device",
         [&] {
             int bytes = 0;
             return ::ioctl(prepared.pair[0], FIONREAD, &bytes) == 0;
         }},
    };
}

Attempts attemptsAtOthers(const Prepared& prepared) {
    return {
        {"make a socket", [&] { return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0) >= 0; }},
        {"make a local socket", [&] { return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0) >= 0; }},
        {"connect",
         [&] {
             const auto address = prepared.here();
             return ::connect(prepared.udp, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
         }},
        {"send elsewhere",
         [&] {
             const auto address = prepared.here();
             return ::sendto(prepared.udp, "x", 1, 0, reinterpret_cast<const sockaddr*>(&address),
                             sizeof address) == 1;
         }},
        {"send a message by another socket",
         [&] {
             iovec part = {prepared.page, 1};
             msghdr message = {};
             message.msg_iov = &part;
             message.msg_iovlen = 1;
             return ::sendmsg(prepared.pair[0], &message, MSG_NOSIGNAL) == 1;
         }},
        {"write to another socket", [&] { return ::write(prepared.pair[0], "x", 1) == 1; }},
        {"start a process",
         [&] {
             const pid_t child = ::fork();
             if (child == 0) {
                 ::_exit(0);
             }
             return child > 0;
         }},
        {"run a program",
         [&] {
             ::execl("/bin/true", "true", nullptr);
             return false;
         }},
        {"be traced", [&] { return ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0; }},
        {"signal its parent", [&] { return ::kill(prepared.parent, 0) == 0; }},
        {"signal a thread of its parent",
         [&] { return ::syscall(SYS_tgkill, prepared.parent, prepared.parent, 0) == 0; }},
        {"change its limits",
         [&] {
             rlimit limits = {};
             return ::getrlimit(RLIMIT_NOFILE, &limits) == 0 && ::setrlimit(RLIMIT_NOFILE, &limits) == 0;
         }},
        {"change what it is", [&] { return ::prctl(PR_SET_DUMPABLE, 0) == 0; }},
        {"have a namespace of its own", [&] { return ::unshare(CLONE_FS) == 0; }},
    };
}

Attempts attemptsAtMemory(const Prepared& prepared) {
    return {
        {"make memory that runs",
         [&] {
             return isThere(::mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
         }},
        {"have memory run", [&] { return ::mprotect(prepared.page, 4096, PROT_READ | PROT_EXEC) == 0; }},
        {"take much memory", [] { return allocates(512UL * 1024 * 1024); }},
        {"take too much memory", [] { return allocates(decoderMemory); }},
        {"start threads",
         [] {
             bool hasRun = false;
             std::thread([&hasRun] { hasRun = true; }).join();
             return hasRun;
         }},
        {"work without end",
         [] {
             const auto decoding = [](const QByteArray&, int) {
                 while (true) {
                     std::this_thread::yield();
                 }
                 return DecodedIcon();
             };
             exitWhenSocketCloses(0);
             return serveRequests(0, decoding, {decoderProcessorBudget, pictureProcessorBudget}) ==
                    RequestLoopEnd::Done;
         }},
    };
}

bool giveUp(std::string_view mode, const Prepared& prepared) {
    if (mode == "confined") {
        return enterSandbox(FileReading::Denied);
    }
    if (mode == "reading") {
        return restrictFiles(std::array{prepared.fonts}) && enterSandbox(FileReading::Allowed);
    }
    return mode == "free";
}

ProbeExit probe(std::string_view mode, std::string_view name, const std::string& folder) {
    const Prepared prepared(folder);
    for (const auto& attempts :
         {attemptsAtFiles(prepared), attemptsAtOthers(prepared), attemptsAtMemory(prepared)}) {
        const auto found = attempts.find(name);
        if (found != attempts.end()) {
            if (!giveUp(mode, prepared)) {
                return ProbeExit::NoSandbox;
            }
            return found->second() ? ProbeExit::Succeeded : ProbeExit::Failed;
        }
    }
    return ProbeExit::Unknown;
}

} // namespace

int main(int argc, char** argv) {
    ::_exit(static_cast<int>(argc == 4 ? probe(argv[1], argv[2], argv[3]) : ProbeExit::Unknown));
}
