#include "platform/linux/decoder/channel/MessageSocket.h"

#include "BytesOf.h"

#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <span>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>

using namespace amberquill::desktop;

namespace {

class MessageSocketTest : public testing::Test {
protected:
    MessageSocketTest() {
        auto sockets = messageSockets();
        if (sockets) {
            std::tie(near_, far_) = std::move(*sockets);
        }
    }

    std::optional<ReceivedMessage> receive() { return receiveMessage(far_.get(), buffer_); }
    std::string_view text(const ReceivedMessage& message) const {
        return {reinterpret_cast<const char*>(buffer_.data()), message.size};
    }

    FileDescriptor near_;
    FileDescriptor far_;
    std::array<std::byte, 8> buffer_ = {};
};

bool isOpen(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) != -1;
}

int descriptorsInUse() {
    int count = 0;
    for (int i = 0; i < 1024; ++i) {
        count += isOpen(i) ? 1 : 0;
    }
    return count;
}

// Sends messages that sendMessage() refuses, as a hostile program may. At most three descriptors.
bool sendAnything(int socket, std::string text, std::span<const int> descriptors) {
    alignas(cmsghdr) std::array<char, CMSG_SPACE(3 * sizeof(int))> control = {};
    iovec part = {text.data(), text.size()};
    msghdr header = {};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    header.msg_control = control.data();
    header.msg_controllen = CMSG_SPACE(descriptors.size_bytes());
    cmsghdr* const rights = CMSG_FIRSTHDR(&header);
    rights->cmsg_level = SOL_SOCKET;
    rights->cmsg_type = SCM_RIGHTS;
    rights->cmsg_len = CMSG_LEN(descriptors.size_bytes());
    std::memcpy(CMSG_DATA(rights), descriptors.data(), descriptors.size_bytes());
    return ::sendmsg(socket, &header, MSG_NOSIGNAL) == static_cast<ssize_t>(text.size());
}

} // namespace

TEST_F(MessageSocketTest, MessagesArriveOneByOne) {
    ASSERT_TRUE(sendMessage(near_.get(), bytesOf("one")));
    ASSERT_TRUE(sendMessage(near_.get(), bytesOf("two")));
    const auto first = receive();
    ASSERT_TRUE(first);
    EXPECT_EQ(text(*first), "one");
    EXPECT_TRUE(first->isWhole);
    EXPECT_EQ(first->descriptorCount, 0U);
    const auto second = receive();
    ASSERT_TRUE(second);
    EXPECT_EQ(text(*second), "two");
}

TEST_F(MessageSocketTest, ATooLongMessageIsReportedAsTruncated) {
    ASSERT_TRUE(sendMessage(near_.get(), bytesOf("123456789")));
    const auto message = receive();
    ASSERT_TRUE(message);
    EXPECT_EQ(message->size, buffer_.size());
    EXPECT_FALSE(message->isWhole);
}

TEST_F(MessageSocketTest, DescriptorsComeWithAMessageAndAreNotInherited) {
    const FileDescriptor file(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    ASSERT_TRUE(sendMessage(near_.get(), bytesOf("x"), std::array{file.get(), near_.get()}));
    int received = -1;
    {
        const auto message = receive();
        ASSERT_TRUE(message);
        ASSERT_EQ(message->descriptorCount, 2U);
        received = message->descriptors[0].get();
        EXPECT_NE(received, file.get());
        struct stat one = {};
        struct stat other = {};
        ASSERT_EQ(::fstat(received, &one), 0);
        ASSERT_EQ(::fstat(file.get(), &other), 0);
        EXPECT_EQ(one.st_rdev, other.st_rdev);
        EXPECT_EQ(::fcntl(received, F_GETFD), FD_CLOEXEC);
    }
    EXPECT_FALSE(isOpen(received));
}

TEST_F(MessageSocketTest, TooManyDescriptorsAreClosed) {
    const int before = descriptorsInUse();
    const std::array descriptors{near_.get(), near_.get(), near_.get()};
    EXPECT_FALSE(sendMessage(near_.get(), bytesOf("x"), descriptors));
    ASSERT_TRUE(sendAnything(near_.get(), "x", descriptors));
    EXPECT_FALSE(receive());
    EXPECT_EQ(descriptorsInUse(), before);
}

TEST_F(MessageSocketTest, DescriptorsOfAnEmptyMessageAreClosed) {
    const int before = descriptorsInUse();
    ASSERT_TRUE(sendAnything(near_.get(), "", std::array{near_.get(), near_.get()}));
    EXPECT_FALSE(receive());
    EXPECT_EQ(descriptorsInUse(), before);
}

TEST_F(MessageSocketTest, AClosedEndIsNoticed) {
    near_.close();
    EXPECT_FALSE(receive());
    EXPECT_FALSE(sendMessage(far_.get(), bytesOf("x")));
}

TEST_F(MessageSocketTest, AnEmptyMessageIsNotSent) {
    EXPECT_FALSE(sendMessage(near_.get(), {}));
}
