#pragma once

#include "platform/linux/decoder/channel/DecodingMessages.h"
#include "platform/linux/decoder/channel/MessageSocket.h"
#include "platform/linux/decoder/channel/SharedMemory.h"
#include "support/TestPaths.h"

#include <QByteArray>
#include <QImage>
#include <array>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace amberquill::desktop {

// Relative to the tests' programs.
inline const QString decoderProgram = QStringLiteral("../amberquill-icons");

// A decoding program, started as the launcher starts it. Killed by the destructor.
class StartedDecoder {
public:
    // amberquill-icons.
    StartedDecoder()
        : StartedDecoder(decoderProgram, {}) {}

    // A program in the tests' folder.
    StartedDecoder(const QString& program, std::vector<std::string> arguments) {
        auto sockets = messageSockets();
        if (!sockets) {
            ADD_FAILURE() << "no sockets";
            return;
        }
        socket_ = std::move(sockets->first);
        arguments.insert(arguments.begin(), testProgram(program).toStdString());
        std::vector<char*> words;
        for (auto& argument : arguments) {
            words.push_back(argument.data());
        }
        words.push_back(nullptr);
        posix_spawn_file_actions_t actions = {};
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, sockets->second.get(), decoderSocket);
        for (const int output : {STDOUT_FILENO, STDERR_FILENO}) {
            ::posix_spawn_file_actions_addopen(&actions, output, "/dev/null", O_WRONLY, 0);
        }
        // An inherited descriptor that it should close.
        constexpr int inherited = 9;
        ::posix_spawn_file_actions_addopen(&actions, inherited, "/dev/null", O_RDONLY, 0);
        EXPECT_EQ(::posix_spawn(&process_, words.front(), &actions, nullptr, words.data(), environ), 0);
        ::posix_spawn_file_actions_destroy(&actions);
    }
    StartedDecoder(const StartedDecoder&) = delete;
    StartedDecoder& operator=(const StartedDecoder&) = delete;
    ~StartedDecoder() {
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            ::waitpid(process_, nullptr, 0);
        }
    }

    [[nodiscard]] pid_t process() const { return process_; }
    [[nodiscard]] int socket() const { return socket_.get(); }

    // Waits for the next answer. None: the process is gone, or the message is invalid.
    std::optional<DecodingAnswer> answer() {
        std::array<std::byte, answerSize> buffer = {};
        const auto message = receiveMessage(socket_.get(), buffer);
        return message ? decodedAnswer(std::span(buffer).first(message->size)) : std::nullopt;
    }

    // False: no answer in that time.
    bool waitForAnswer(std::chrono::milliseconds longest) {
        pollfd socket = {socket_.get(), POLLIN, 0};
        return ::poll(&socket, 1, static_cast<int>(longest.count())) > 0;
    }

    bool isReady() { return answer() == DecodingAnswer{DecodingOutcome::Ready, 0, false}; }

    bool ask(const QByteArray& bytes, std::uint32_t edge) {
        const FileDescriptor file = sealedMemory(std::as_bytes(std::span(bytes)));
        picture_ = writableMemory(pictureBytes(edge));
        std::array<std::byte, requestSize> message = {};
        encode(DecodingRequest{edge, static_cast<std::uint32_t>(bytes.size())}, message);
        return sendMessage(socket_.get(), message, std::array{file.get(), picture_.get()});
    }

    // The picture of the last answer.
    QImage picture(std::uint32_t edge) {
        auto mapped = MappedMemory::map(picture_, pictureBytes(edge), MappedMemory::Access::Read);
        if (!mapped) {
            return {};
        }
        const auto bytes = mapped->bytes();
        return QImage(reinterpret_cast<const uchar*>(bytes.data()), static_cast<int>(edge),
                      static_cast<int>(edge), QImage::Format_ARGB32_Premultiplied)
            .copy();
    }

    // Sends a request and waits for its picture. Null: no picture.
    QImage decoded(const QByteArray& bytes, std::uint32_t edge) {
        const DecodingAnswer wanted{DecodingOutcome::Picture, edge, false};
        return ask(bytes, edge) && answer() == wanted ? picture(edge) : QImage();
    }

    void hangUp() { socket_.close(); }

    // Waits for its end. Returns waitpid()'s status.
    int status() {
        int status = -1;
        EXPECT_GT(::waitpid(std::exchange(process_, -1), &status, 0), 0);
        return status;
    }

    // Waits until it ends by itself.
    std::optional<DecoderExit> exit() {
        const int status = this->status();
        EXPECT_TRUE(WIFEXITED(status)) << WTERMSIG(status);
        return WIFEXITED(status) ? std::optional(static_cast<DecoderExit>(WEXITSTATUS(status)))
                                 : std::nullopt;
    }

private:
    FileDescriptor socket_;
    FileDescriptor picture_;
    pid_t process_ = -1;
};

} // namespace amberquill::desktop
