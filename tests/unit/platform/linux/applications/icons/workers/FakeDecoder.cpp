// A test double of amberquill-icons. Its behaviour is chosen by the "file", which has a command and sometimes
// a number. Files that it writes to FAKE_DECODER_FOLDER:
//   started         a line for each process: its id, and " fonts" if it was started with fonts
//   third           more than two ran at a time
//   hangs-*, ...    see below; ends with the process's id
// FAKE_DECODER_START is what it does instead of becoming ready.
#include "platform/linux/decoder/channel/DecodingMessages.h"
#include "platform/linux/decoder/channel/MessageSocket.h"
#include "platform/linux/decoder/channel/SharedMemory.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>

extern char** environ; // NOLINT(readability-redundant-declaration): not every system declares it

using namespace amberquill::desktop;

namespace {

constexpr std::uint32_t red = 0xFFFF0000U;
constexpr std::uint32_t green = 0xFF00FF00U;
constexpr std::uint32_t blue = 0xFF0000FFU;
constexpr std::uint32_t glowing = 0x80FF4080U; // not a valid premultiplied pixel

std::string folder() {
    const char* const text = std::getenv("FAKE_DECODER_FOLDER");
    return text == nullptr ? "." : text;
}

// Atomically, for readers that wait for the file.
void leave(const std::string& name, const std::string& text = {}) {
    const auto path = folder() + '/' + name;
    const auto temporary = folder() + "/." + name + std::to_string(::getpid());
    std::ofstream(temporary) << text;
    std::filesystem::rename(temporary, path);
}

void appendTo(const std::string& name, const std::string& line) {
    const auto path = folder() + '/' + name;
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    [[maybe_unused]] const auto written = ::write(file, line.data(), line.size());
    ::close(file);
}

// How many calls any process made before.
int timesBefore(const std::string& name) {
    const auto path = folder() + '/' + name;
    std::error_code none;
    const auto size = std::filesystem::file_size(path, none);
    appendTo(name, ".");
    return none ? 0 : static_cast<int>(size);
}

void takePlace() {
    for (const char* const name : {"/place1", "/place2"}) {
        const int file = ::open((folder() + name).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (::flock(file, LOCK_EX | LOCK_NB) == 0) {
            return; // held while it lives
        }
    }
    leave("third");
}

[[noreturn]] void waitForEnd(int signal) {
    constexpr rlimit noCore = {};
    ::setrlimit(RLIMIT_CORE, &noCore);
    std::signal(signal, SIG_DFL); // a sanitizer would print a report
    ::raise(signal);
    ::_exit(99);
}

[[noreturn]] void hang() {
    leave("hangs-" + std::to_string(::getpid()));
    while (true) {
        ::pause();
    }
}

// The inherited state.
std::string report() {
    std::ostringstream text;
    text << "leads a session: " << (::getsid(0) == ::getpid()) << '\n';
    for (int signal = 1; signal < NSIG; ++signal) {
        struct sigaction action = {};
        sigset_t mask = {};
        ::sigprocmask(SIG_BLOCK, nullptr, &mask);
        if (::sigaction(signal, nullptr, &action) == 0 &&
            (action.sa_handler == SIG_IGN || ::sigismember(&mask, signal) == 1)) {
            text << "signal: " << signal << '\n';
        }
    }
    std::array<std::string, 16> descriptors;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const auto target = std::filesystem::read_symlink(entry.path(), gone);
        const auto number = std::stoul(entry.path().filename());
        const bool isOurs = target.string().starts_with("/proc/") || target.filename() == "place1" ||
                            target.filename() == "place2" || target.string().starts_with("/memfd:");
        if (!isOurs && number < descriptors.size()) {
            descriptors.at(number) = target.string().substr(0, target.string().find('['));
        }
    }
    for (std::size_t i = 0; i < descriptors.size(); ++i) {
        if (!descriptors.at(i).empty()) {
            text << "descriptor " << i << ": " << descriptors.at(i) << '\n';
        }
    }
    for (char** variable = environ; *variable != nullptr; ++variable) {
        text << "variable: " << *variable << '\n';
    }
    return text.str();
}

class Answers {
public:
    Answers(const DecodingRequest& request, const FileDescriptor& picture)
        : request_(request)
        , picture_(picture) {}

    void fill(std::uint32_t colour) const {
        auto memory =
            MappedMemory::map(picture_, pictureBytes(request_.edge), MappedMemory::Access::ReadAndWrite);
        for (std::size_t at = 0; at < memory->bytes().size(); at += sizeof colour) {
            std::memcpy(memory->bytes().data() + at, &colour, sizeof colour);
        }
    }

    void picture(std::uint32_t colour, bool isLast = false) const {
        fill(colour);
        say({DecodingOutcome::Picture, request_.edge, isLast});
    }

    static void say(const DecodingAnswer& answer, std::size_t size = answerSize,
                    std::span<const int> descriptors = {}) {
        std::array<std::byte, answerSize* 2> message = {};
        encode(answer, std::span(message).first<answerSize>());
        static_cast<void>(sendMessage(decoderSocket, std::span(message).first(size), descriptors));
    }

private:
    const DecodingRequest& request_;
    const FileDescriptor& picture_;
};

struct Command {
    std::string word;
    int number = 0;
};

bool misbehave(const Command& command, const DecodingRequest& request, const Answers& answers) {
    const auto& word = command.word;
    const DecodingAnswer right{DecodingOutcome::Picture, request.edge, false};
    if (word == "signal") {
        waitForEnd(command.number);
    } else if (word == "exit") {
        ::_exit(command.number);
    } else if (word == "hang") {
        hang();
    } else if (word == "close") {
        ::close(decoderSocket);
        hang();
    } else if (word == "garbage") {
        const std::array<std::byte, answerSize> nonsense = {};
        static_cast<void>(sendMessage(decoderSocket, nonsense));
    } else if (word == "short") {
        Answers::say(right, answerSize - 1);
    } else if (word == "long") {
        Answers::say(right, answerSize + 1);
    } else if (word == "descriptor") {
        Answers::say(right, answerSize, std::array{STDOUT_FILENO});
    } else if (word == "smaller") {
        Answers::say({DecodingOutcome::Picture, request.edge - 1, false});
    } else if (word == "ready") {
        Answers::say({DecodingOutcome::Ready, 0, false});
    } else if (word == "fonts") {
        Answers::say({DecodingOutcome::NeedsFonts, request.edge, false});
    } else if (word == "twice") {
        answers.picture(red);
        Answers::say(right);
        leave("twice");
    } else if (word == "gone") { // after its answer
        answers.picture(red);
        ::_exit(0);
    } else {
        return false;
    }
    return true;
}

void carryOut(const Command& command, const DecodingRequest& request, const Answers& answers, bool hasFonts) {
    const auto& word = command.word;
    if (misbehave(command, request, answers)) {
        return;
    }
    if (word == "killed" && timesBefore(word) < command.number) {
        waitForEnd(SIGKILL);
    } else if (word == "crashes" && timesBefore(word) < command.number) {
        waitForEnd(SIGSEGV);
    } else if (word == "none") {
        Answers::say({DecodingOutcome::NoPicture, request.edge, false});
    } else if (word == "text" && !hasFonts) {
        Answers::say({DecodingOutcome::NeedsFonts, request.edge, false});
    } else if (word == "text") {
        answers.picture(blue);
    } else if (word == "last") {
        answers.picture(red, true);
    } else if (word == "glowing") {
        answers.picture(glowing);
    } else if (word == "waits") { // for the file `go`
        leave(word);
        while (!std::filesystem::exists(folder() + "/go")) {
            ::usleep(1'000);
        }
        answers.picture(red);
    } else if (word == "report") {
        leave("report", report());
        answers.picture(red);
    } else {
        answers.picture(word == "green" ? green : red);
    }
}

void start(const std::string& how) {
    const bool isFirst = how.starts_with("first ") && timesBefore("start") == 0;
    const auto word = how.starts_with("first ") ? (isFirst ? how.substr(6) : std::string()) : how;
    if (word == "silent" || (word == "second silent" && timesBefore("start") == 1)) {
        hang();
    } else if (word == "exit") {
        ::_exit(1);
    } else if (word == "killed") {
        waitForEnd(SIGKILL);
    } else if (word == "close") {
        ::close(decoderSocket);
        hang();
    } else if (word == "picture") {
        Answers::say({DecodingOutcome::Picture, 1, false});
    }
    Answers::say({DecodingOutcome::Ready, 0, false});
    if (word == "thrice" && timesBefore(word) < 3) {
        waitForEnd(SIGKILL);
    }
    if (word == "early") {
        Answers::say({DecodingOutcome::NoPicture, 48, false});
        leave("early");
    }
}

} // namespace

int main(int argc, char** argv) {
    takePlace();
    const bool hasFonts = std::any_of(
        argv, argv + argc, [](const char* text) { return std::string(text) == decoderFontsArgument; });
    appendTo("started", std::to_string(::getpid()) + (hasFonts ? " fonts\n" : "\n"));
    const char* const how = std::getenv("FAKE_DECODER_START");
    start(how == nullptr ? "" : how);
    while (true) {
        std::array<std::byte, requestSize> buffer = {};
        const auto message = receiveMessage(decoderSocket, buffer);
        if (!message) {
            return 0;
        }
        const auto request = decodedRequest(std::span(buffer).first(message->size));
        if (!request || message->descriptorCount != requestDescriptors) {
            leave("senseless");
            return 1;
        }
        const auto file =
            MappedMemory::map(message->descriptors[0], request->bytes, MappedMemory::Access::Read);
        std::istringstream text(
            std::string(reinterpret_cast<const char*>(file->bytes().data()), request->bytes));
        Command command;
        text >> command.word >> command.number;
        carryOut(command, *request, Answers(*request, message->descriptors[1]), hasFonts);
    }
}
